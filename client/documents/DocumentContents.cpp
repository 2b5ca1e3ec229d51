#include <documents/VellDocuments.h>

#include <document_model/DocumentJson.h>
#include <documents/DocumentLookup.h>
#include <documents/VellDocumentStore.h>
#include <session/SessionAccess.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>

#include <QEventLoop>
#include <QJsonObject>
#include <QNetworkReply>

#include <memory>

using Lane = OperationLanes::Lane;

namespace {

constexpr int Md5Digits = 32;

} // namespace

VellResult<QString> *VellDocuments::contentMd5(const QString &fileId)
{
    return SessionAccess::start<QString>(m_session, Lane::Short, [fileId](OperationRun &run) {
        return run.query([&] {
            const std::unique_ptr<QNetworkReply> reply(NetworkManager::instance()->get(
                run.address(QStringLiteral("base-service/files/") + fileId)));
            reply->setReadBufferSize(1); // only the head is needed
            QEventLoop loop;
            const auto hasHead = [&reply] {
                const int status =
                    reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
                return status / 100 == 2;
            };
            QObject::connect(reply.get(), &QNetworkReply::metaDataChanged, &loop, [&] {
                reply->setReadBufferSize(0); // the body is the message of an error
                if (hasHead())
                    loop.quit();
            });
            QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
            if (!reply->isFinished() && !hasHead())
                loop.exec();
            run.checkAborted();
            const QByteArray tag = reply->rawHeader("ETag").replace('"', "");
            reply->disconnect();
            return tag.size() == Md5Digits ? QString::fromLatin1(tag).toLower() : QString();
        });
    });
}

VellResult<VellDocument> *VellDocuments::copy(const VellDocument &document, const QString &folderId,
                                              const QString &name)
{
    const auto textOrNull = [](const QString &text) {
        return text.isEmpty() ? QJsonValue() : QJsonValue(text);
    };
    const QJsonObject body{{QStringLiteral("type"), QStringLiteral("file")},
                           {QStringLiteral("name"), name},
                           {QStringLiteral("parentId"), textOrNull(folderId)},
                           {QStringLiteral("category"), textOrNull(document.category)},
                           {QStringLiteral("remark"), document.remark},
                           {QStringLiteral("file"), document.fileId}};
    return SessionAccess::start<VellDocument>(
        m_session, Lane::Short,
        [=](OperationRun &run) {
            document_lookup::requireFreeName(run, folderId, name);
            VellDocument made;
            run.change([&] {
                NetworkEventLoop loop(NetworkManager::instance()->postJson(
                    run.address(QStringLiteral("document-service/projects/%1/documents")
                                    .arg(run.projectId())),
                    body));
                loop.exec();
                VellPubDoc::jsonToDocObject(loop.object(), made);
                return !made._id.isEmpty();
            });
            return made;
        },
        [this](const VellDocument &made) {
            m_store->insert(made);
            m_store->markFolderChanged(made.parentId);
        });
}
