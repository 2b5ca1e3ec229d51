#include "Fuzzing.h"

#include <document_model/DocumentJson.h>

#include <VellPublicFun/VellPub.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QVariant>

// Records and history entries from arbitrary JSON, beside a reader that looks each key up.
namespace {

QString text(const QJsonObject &object, const char *key)
{
    return object.value(QLatin1String(key)).toString();
}

QDateTime time(const QJsonObject &object, const char *key)
{
    return VellPub::getDateTimeByQString(text(object, key));
}

int number(const QJsonObject &object, const char *key)
{
    return object.value(QLatin1String(key)).toInt();
}

//! Text, number and so on of every field, for comparing.
QStringList fieldsOf(const VellDocument &doc)
{
    QStringList fields{doc._id,       doc.name,      doc.parentId, doc.documentId, doc.hostId,
                       doc.category,  doc.projectId, doc.type,     doc.status,     doc.fileId,
                       doc.filePath,  doc.suffix,    doc.pwd,      doc.previewId,  doc.remark,
                       doc.updatedBy, doc.createdBy};
    for (const qint64 value : {qint64(doc.hostType), qint64(doc.order), qint64(doc.recycle),
                               qint64(doc.favorite), doc.fileSize})
        fields.append(QString::number(value));
    for (const QDateTime &moment :
         {doc.downloadTime, doc.updatedAt, doc.createdAt, doc.historyUpdatedAt})
        fields.append(VellPub::getQStringByDateTime(moment));
    for (auto right = doc.auths.cbegin(); right != doc.auths.cend(); ++right)
        fields.append(right.key() + QString::number(int(*right)));
    for (auto link = doc.entity.cbegin(); link != doc.entity.cend(); ++link)
        fields.append(link.key() + link->join(QLatin1Char('\n')));
    return fields;
}

VellDocument plainRecord(const QJsonObject &object, VellDocument doc)
{
    const QJsonObject file = object.value(QLatin1String("file")).toObject();
    doc._id = text(object, "_id");
    doc.name = text(object, "name");
    doc.parentId = text(object, "parentId");
    doc.projectId = text(object, "projectId");
    doc.category = text(object, "category");
    doc.hostId = text(object, "hostId");
    doc.hostType = number(object, "hostType");
    doc.recycle = number(object, "recycle");
    doc.documentId = text(object, "documentId");
    doc.favorite = object.value(QLatin1String("favorite")).toBool();
    doc.previewId = text(object, "previewId");
    doc.pwd = text(object, "pwd");
    doc.type = text(object, "type");
    doc.order = number(object, "order");
    doc.remark = text(object, "remark");
    doc.status = text(object, "status");
    doc.fileId = text(file, "fileId");
    doc.fileSize = file.value(QLatin1String("fileSize")).toVariant().toLongLong();
    doc.suffix = text(file, "suffix");
    doc.entity = VellPub::jsonArrayToLinksEntity(object.value(QLatin1String("entity")).toArray());
    doc.createdAt = time(object, "createdAt");
    doc.createdBy = text(object, "createdBy");
    doc.updatedAt = time(object, "updatedAt");
    doc.updatedBy = text(object, "updatedBy");
    doc.downloadTime = time(object, "downloadTime");
    const QJsonArray auths = object.value(QLatin1String("auths")).toArray();
    for (const QJsonValue &right : auths)
        doc.auths.insert(text(right.toObject(), "key"),
                         text(right.toObject(), "value") == QLatin1String("true"));
    return doc;
}

VellDocument plainHistory(const QJsonObject &object, VellDocument doc)
{
    const QJsonObject file = object.value(QLatin1String("file")).toObject();
    doc._id = text(object, "_id");
    doc.name = text(object, "name");
    doc.documentId = text(object, "documentId");
    doc.previewId = text(object, "previewId");
    doc.remark = text(object, "remark");
    doc.fileId = text(file, "fileId");
    doc.fileSize = number(file, "fileSize");
    doc.suffix = text(file, "suffix");
    doc.createdAt = time(object, "createdAt");
    doc.createdBy = text(object, "createdBy");
    doc.historyUpdatedAt = time(object, "updatedAt");
    return doc;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    VellDocument filled;
    filled.filePath = QStringLiteral("kept");
    filled.auths.insert(QStringLiteral("kept"), true);
    for (const VellDocument &start : {VellDocument(), filled}) {
        VellDocument doc = start;
        VellPubDoc::jsonToDocObject(object, doc);
        require(fieldsOf(doc) == fieldsOf(plainRecord(object, start)), "a record as looked up");
        VellPubDoc::jsonToDocHistoryObject(object, doc = start);
        require(fieldsOf(doc) == fieldsOf(plainHistory(object, start)),
                "a history entry as looked up");
        QJsonObject out = object;
        VellPubDoc::doc2JsonString(doc, out);
        require(text(out, "_id") == doc._id && text(out, "documentId") == doc._id,
                "both identifiers");
        require(time(out, "downloadTime").isValid(), "a moment");
    }
    return 0;
}
