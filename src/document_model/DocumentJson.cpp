#include <document_model/DocumentJson.h>

#include <VellPublicFun/VellPub.h>

#include <QJsonArray>
#include <QVariant>

namespace {

QString text(const QJsonObject &obj, QLatin1String key)
{
    return obj.value(key).toString();
}

QDateTime dateTime(const QJsonObject &obj, QLatin1String key)
{
    return VellPub::getDateTimeByQString(text(obj, key));
}

void mergeRights(const QJsonArray &auths, QMap<QString, bool> &rights)
{
    for (const QJsonValue &element : auths) {
        const QJsonObject right = element.toObject();
        // The service sends the words "true" and "false"; a JSON boolean grants nothing.
        rights.insert(text(right, QLatin1String("key")),
                      text(right, QLatin1String("value")) == QLatin1String("true"));
    }
}

} // namespace

void VellPubDoc::jsonToDocObject(const QJsonObject &obj, VellDocument &doc)
{
    doc._id = text(obj, QLatin1String("_id"));
    doc.name = text(obj, QLatin1String("name"));
    doc.parentId = text(obj, QLatin1String("parentId"));
    doc.projectId = text(obj, QLatin1String("projectId"));
    doc.category = text(obj, QLatin1String("category"));
    doc.hostId = text(obj, QLatin1String("hostId"));
    doc.hostType = obj.value(QLatin1String("hostType")).toInt();
    doc.recycle = obj.value(QLatin1String("recycle")).toInt();
    doc.documentId = text(obj, QLatin1String("documentId"));
    doc.favorite = obj.value(QLatin1String("favorite")).toBool();
    doc.previewId = text(obj, QLatin1String("previewId"));
    doc.pwd = text(obj, QLatin1String("pwd"));
    doc.type = text(obj, QLatin1String("type"));
    doc.order = obj.value(QLatin1String("order")).toInt();
    doc.remark = text(obj, QLatin1String("remark"));
    doc.status = text(obj, QLatin1String("status"));

    const QJsonObject file = obj.value(QLatin1String("file")).toObject();
    doc.fileId = text(file, QLatin1String("fileId"));
    // Through QVariant, so that a numeric text counts and nothing is cut to 32 bits.
    doc.fileSize = file.value(QLatin1String("fileSize")).toVariant().toLongLong();
    doc.suffix = text(file, QLatin1String("suffix"));

    doc.entity = VellPub::jsonArrayToLinksEntity(obj.value(QLatin1String("entity")).toArray());
    doc.createdAt = dateTime(obj, QLatin1String("createdAt"));
    doc.createdBy = text(obj, QLatin1String("createdBy"));
    doc.updatedAt = dateTime(obj, QLatin1String("updatedAt"));
    doc.updatedBy = text(obj, QLatin1String("updatedBy"));
    doc.downloadTime = dateTime(obj, QLatin1String("downloadTime"));
    mergeRights(obj.value(QLatin1String("auths")).toArray(), doc.auths);
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
    // Histories carry the size as a 32-bit number.
    doc.fileSize = file.value(QLatin1String("fileSize")).toInt();
    // A history entry has a "suffix" at the top level too; that of the file always wins, also when
    // it is missing.
    doc.suffix = text(file, QLatin1String("suffix"));

    doc.createdAt = dateTime(obj, QLatin1String("createdAt"));
    doc.createdBy = text(obj, QLatin1String("createdBy"));
    doc.historyUpdatedAt = dateTime(obj, QLatin1String("updatedAt"));
}

void VellPubDoc::doc2JsonString(const VellDocument &doc, QJsonObject &out)
{
    out.insert(QLatin1String("_id"), doc._id);
    out.insert(QLatin1String("documentId"), doc._id); // readers of this form look up by either key
    out.insert(QLatin1String("name"), doc.name);
    out.insert(QLatin1String("createdAt"), VellPub::getQStringByDateTime(doc.createdAt));
    out.insert(QLatin1String("createdBy"), doc.createdBy);
    out.insert(QLatin1String("updatedAt"), VellPub::getQStringByDateTime(doc.updatedAt));
    out.insert(QLatin1String("updatedBy"), doc.updatedBy);
    out.insert(QLatin1String("fileId"), doc.fileId);
    out.insert(QLatin1String("frequent"), doc.favorite);
    out.insert(QLatin1String("pdfView"), doc.previewId);
    // The record is written when it is downloaded, so that moment is the download time.
    out.insert(QLatin1String("downloadTime"),
               VellPub::getQStringByDateTime(QDateTime::currentDateTime()));
    out.insert(QLatin1String("file"),
               QJsonObject{
                   // This form holds 32-bit sizes: 2 GiB and more wrap.
                   {QLatin1String("fileSize"), static_cast<qint32>(doc.fileSize)},
                   {QLatin1String("suffix"), doc.suffix},
               });
}
