#include <document_model/DocumentJson.h>
#include <document_model/VellRecordType.h>
#include <document_service/ServiceRequest.h>
#include <document_service/VellDocService.h>

#include <VellPublicFun/VellPub.h>

namespace VellDocService {

namespace {

bool setRecord(const QString &id, int type, bool value)
{
    return putJson(serviceUrl(QStringLiteral("documents/%1/records")).arg(id),
                   QJsonObject{
                       {QStringLiteral("type"), type},
                       {QStringLiteral("value"), value},
                   })
        .isSuccessful();
}

} // namespace

bool restoreFile(const QString &id, const QStringList &, int type, bool value, QString &)
{
    return setRecord(id, type, value);
}

void setFrequentDocument(const QString &id, bool value, bool &ok)
{
    ok = setRecord(id, VellRecordType::Frequent, value);
}

bool setRectentDocument(const QString &id, bool value)
{
    return setRecord(id, VellRecordType::Recent, value);
}

bool getFavorDoc(int &type, const QString &id)
{
    const ServiceReply reply =
        get(serviceUrl(QStringLiteral(R"(documents/records?where={"documentId":"%1","type":3})"))
                .arg(id));
    const QList<QJsonObject> records = reply.objectList();
    if (!records.isEmpty())
        type = records.first().value(QLatin1String("type")).toInt();
    return reply.isSuccessful();
}

bool shareDocument(const QStringList &ids, const QDateTime &expiredAt, QString &code,
                   bool allowDownload)
{
    QJsonObject body{
        {QStringLiteral("hostId"), projectId()},
        {QStringLiteral("documentIds"), QJsonArray::fromStringList(ids)},
        {QStringLiteral("allowDownload"), allowDownload},
    };
    if (expiredAt.isValid())
        body.insert(QStringLiteral("expiredAt"), VellPub::getQStringByDateTime(expiredAt));
    const ServiceReply reply = postJson(serviceUrl(QStringLiteral("documents/shares")), body);
    code = reply.object().value(QLatin1String("code")).toString();
    return reply.isSuccessful();
}

bool getDocHistory(const QString &id, QList<VellDocument> &versions)
{
    const ServiceReply reply =
        get(serviceUrl(QStringLiteral("documents/%1/histories?order=-createdAt")).arg(id));
    reply.appendTo(versions, VellPubDoc::jsonToDocHistoryObject);
    return reply.isSuccessful();
}

bool updateDocRemake(bool history, const QString &id, const QString &remark)
{
    const QString path =
        history ? QStringLiteral("documents/histories/%1") : QStringLiteral("documents/%1");
    return putJson(serviceUrl(path).arg(id), QJsonObject{{QStringLiteral("remark"), remark}})
        .isSuccessful();
}

void getDocPwd(const QString &id, QString &pwd)
{
    pwd = get(serviceUrl(QStringLiteral("documents/%1?pwd=true")).arg(id))
              .object()
              .value(QLatin1String("pwd"))
              .toString();
}

} // namespace VellDocService
