#include <documents/VellDocuments.h>

#include <session/SessionAccess.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellPublicFun/VellPub.h>

#include <QJsonArray>
#include <QJsonObject>

using Lane = OperationLanes::Lane;

namespace {

QString sharesPath()
{
    return QStringLiteral("document-service/documents/shares");
}

VellShare shareFrom(const QJsonObject &json)
{
    VellShare share;
    share.id = json.value(QLatin1String("_id")).toString();
    const QJsonArray documents = json.value(QLatin1String("documents")).toArray();
    for (const QJsonValue &value : documents) {
        const QJsonObject object = value.toObject();
        VellDocument document;
        document._id = object.value(QLatin1String("_id")).toString();
        document.name = object.value(QLatin1String("name")).toString();
        document.type = object.value(QLatin1String("type")).toString();
        share.documents.append(document);
    }
    const auto date = [&json](const char *key) {
        return VellPub::getDateTimeByQString(json.value(QLatin1String(key)).toString());
    };
    share.isDownloadAllowed = json.value(QLatin1String("allowDownload")).toBool();
    share.expiresAt = date("expiredAt");
    share.createdAt = date("createdAt");
    share.createdBy = json.value(QLatin1String("createdBy")).toString();
    return share;
}

} // namespace

VellResult<VellShare> *VellDocuments::share(const QStringList &ids, const QDateTime &expiresAt,
                                            bool allowDownload)
{
    return SessionAccess::start<VellShare>(m_session, Lane::Short, [=](OperationRun &run) {
        VellShare share;
        run.change([&] {
            return run.documents().shareDocument(ids, expiresAt, share.code, allowDownload);
        });
        if (share.code.isEmpty())
            throw OperationFailure{VellError::of(VellError::Kind::Unclear)};
        share.address = run.address(QStringLiteral("share/") + share.code);
        share.isDownloadAllowed = allowDownload;
        share.expiresAt = expiresAt;
        return share;
    });
}

VellResult<QList<VellShare>> *VellDocuments::shares()
{
    return SessionAccess::start<QList<VellShare>>(m_session, Lane::List, [](OperationRun &run) {
        return run.query([&] {
            NetworkEventLoop loop(NetworkManager::instance()->get(
                run.address(sharesPath()) + QStringLiteral("?hostId=") + run.projectId()));
            loop.exec();
            QList<VellShare> shares;
            const QList<QJsonObject> objects = loop.objectList();
            for (const QJsonObject &object : objects)
                shares.append(shareFrom(object));
            return shares;
        });
    });
}

VellResult<bool> *VellDocuments::revokeShare(const QString &id)
{
    return SessionAccess::start<bool>(m_session, Lane::Short, [id](OperationRun &run) {
        run.deleteResource(sharesPath() + QLatin1Char('/') + id);
        return true;
    });
}
