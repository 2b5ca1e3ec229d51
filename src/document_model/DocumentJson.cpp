#include <document_model/DocumentJson.h>

#include <VellPublicFun/VellPub.h>

#include <QJsonArray>
#include <QVariant>

#include <bitset>
#include <iterator>

namespace {

QString text(const QJsonObject &obj, QLatin1String key)
{
    return obj.value(key).toString();
}

QDateTime dateTime(const QJsonObject &obj, QLatin1String key)
{
    return VellPub::getDateTimeByQString(text(obj, key));
}

template <QString VellDocument::*field>
void readText(const QJsonValue &value, VellDocument &doc)
{
    doc.*field = value.toString();
}

template <int VellDocument::*field>
void readInt(const QJsonValue &value, VellDocument &doc)
{
    doc.*field = value.toInt();
}

template <QDateTime VellDocument::*field>
void readDateTime(const QJsonValue &value, VellDocument &doc)
{
    doc.*field = VellPub::getDateTimeByQString(value.toString());
}

void readFavorite(const QJsonValue &value, VellDocument &doc)
{
    doc.favorite = value.toBool();
}

void readFile(const QJsonValue &value, VellDocument &doc)
{
    const QJsonObject file = value.toObject();
    doc.fileId = text(file, QLatin1String("fileId"));
    // By QVariant, so that numeric strings are accepted and nothing is truncated to 32 bits.
    doc.fileSize = file.value(QLatin1String("fileSize")).toVariant().toLongLong();
    doc.suffix = text(file, QLatin1String("suffix"));
}

void readEntity(const QJsonValue &value, VellDocument &doc)
{
    doc.entity = VellPub::jsonArrayToLinksEntity(value.toArray());
}

void mergeRights(const QJsonValue &value, VellDocument &doc)
{
    const QJsonArray auths = value.toArray();
    for (const QJsonValue &element : auths) {
        const QJsonObject right = element.toObject();
        // The service sends the strings "true" and "false"; a JSON boolean grants nothing.
        doc.auths.insert(text(right, QLatin1String("key")),
                         text(right, QLatin1String("value")) == QLatin1String("true"));
    }
}

struct Reader
{
    QLatin1String key;
    // A missing key is read as an undefined value.
    void (*read)(const QJsonValue &value, VellDocument &doc) = nullptr;
};

// Sorted like the members of an object, so that the next member is mostly in the next row.
const Reader readers[] = {
    {QLatin1String("_id"), readText<&VellDocument::_id>},
    {QLatin1String("auths"), mergeRights},
    {QLatin1String("category"), readText<&VellDocument::category>},
    {QLatin1String("createdAt"), readDateTime<&VellDocument::createdAt>},
    {QLatin1String("createdBy"), readText<&VellDocument::createdBy>},
    {QLatin1String("documentId"), readText<&VellDocument::documentId>},
    {QLatin1String("downloadTime"), readDateTime<&VellDocument::downloadTime>},
    {QLatin1String("entity"), readEntity},
    {QLatin1String("favorite"), readFavorite},
    {QLatin1String("file"), readFile},
    {QLatin1String("hostId"), readText<&VellDocument::hostId>},
    {QLatin1String("hostType"), readInt<&VellDocument::hostType>},
    {QLatin1String("name"), readText<&VellDocument::name>},
    {QLatin1String("order"), readInt<&VellDocument::order>},
    {QLatin1String("parentId"), readText<&VellDocument::parentId>},
    {QLatin1String("previewId"), readText<&VellDocument::previewId>},
    {QLatin1String("projectId"), readText<&VellDocument::projectId>},
    {QLatin1String("pwd"), readText<&VellDocument::pwd>},
    {QLatin1String("recycle"), readInt<&VellDocument::recycle>},
    {QLatin1String("remark"), readText<&VellDocument::remark>},
    {QLatin1String("status"), readText<&VellDocument::status>},
    {QLatin1String("type"), readText<&VellDocument::type>},
    {QLatin1String("updatedAt"), readDateTime<&VellDocument::updatedAt>},
    {QLatin1String("updatedBy"), readText<&VellDocument::updatedBy>},
};
constexpr std::size_t ReaderCount = std::size(readers);

//! Returns the row of \a key, which is searched from \a start on and then from the first row; ReaderCount for an unknown
//! key.
std::size_t readerOf(const QString &key, std::size_t start)
{
    for (std::size_t i = 0; i < ReaderCount; ++i) {
        const std::size_t row = (start + i) % ReaderCount;
        if (key.size() == readers[row].key.size() && key == readers[row].key)
            return row;
    }
    return ReaderCount;
}

} // namespace

void VellPubDoc::jsonToDocObject(const QJsonObject &obj, VellDocument &doc)
{
    // The members are read one after the other, because looking up a key takes longer than mapping its value.
    std::bitset<ReaderCount> missing;
    missing.set();
    std::size_t next = 0;
    const auto end = obj.constEnd();
    for (auto member = obj.constBegin(); member != end; ++member) {
        const std::size_t row = readerOf(member.key(), next);
        if (row == ReaderCount)
            continue;
        readers[row].read(member.value(), doc);
        missing.reset(row);
        next = row + 1;
    }
    for (std::size_t row = 0; row < ReaderCount; ++row) {
        if (missing.test(row))
            readers[row].read(QJsonValue(QJsonValue::Undefined), doc);
    }
}

void VellPubDoc::jsonToDocHistoryObject(const QJsonObject &obj, VellDocument &doc)
{
    doc._id = text(obj, QLatin1String("_id"));
    doc.name = text(obj, QLatin1String("name"));
    doc.documentId = text(obj, QLatin1String("documentId"));
    doc.previewId = text(obj, QLatin1String("previewId"));
    doc.remark = text(obj, QLatin1String("remark"));

    const QJsonObject file = obj.value(QLatin1String("file")).toObject();
    doc.fileId = text(file, QLatin1String("fileId"));
    // The history has the size as a 32-bit integer.
    doc.fileSize = file.value(QLatin1String("fileSize")).toInt();
    // A version also has a "suffix" at the top level; that of the file is always used, even if it is
    // missing.
    doc.suffix = text(file, QLatin1String("suffix"));

    doc.createdAt = dateTime(obj, QLatin1String("createdAt"));
    doc.createdBy = text(obj, QLatin1String("createdBy"));
    doc.historyUpdatedAt = dateTime(obj, QLatin1String("updatedAt"));
}

void VellPubDoc::doc2JsonString(const VellDocument &doc, QJsonObject &out)
{
    out.insert(QLatin1String("_id"), doc._id);
    out.insert(QLatin1String("documentId"), doc._id); // readers of this form use either key
    out.insert(QLatin1String("name"), doc.name);
    out.insert(QLatin1String("createdAt"), VellPub::getQStringByDateTime(doc.createdAt));
    out.insert(QLatin1String("createdBy"), doc.createdBy);
    out.insert(QLatin1String("updatedAt"), VellPub::getQStringByDateTime(doc.updatedAt));
    out.insert(QLatin1String("updatedBy"), doc.updatedBy);
    out.insert(QLatin1String("fileId"), doc.fileId);
    out.insert(QLatin1String("frequent"), doc.favorite);
    out.insert(QLatin1String("pdfView"), doc.previewId);
    // The record is written when it is downloaded, so this is the download time.
    out.insert(QLatin1String("downloadTime"),
               VellPub::getQStringByDateTime(QDateTime::currentDateTimeUtc()));
    out.insert(QLatin1String("file"),
               QJsonObject{
                   // This form has 32-bit sizes: 2 GiB and more overflow.
                   {QLatin1String("fileSize"), static_cast<qint32>(doc.fileSize)},
                   {QLatin1String("suffix"), doc.suffix},
               });
}
