#include <documents/VellDocuments.h>

#include <document_model/DocumentJson.h>
#include <documents/DocumentLookup.h>
#include <documents/VellDocumentStore.h>
#include <session/SessionAccess.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>

#include <QCryptographicHash>
#include <QEventLoop>
#include <QJsonObject>
#include <QNetworkReply>
#include <QSaveFile>

#include <memory>
#include <optional>

using Lane = OperationLanes::Lane;

namespace {

constexpr qint64 BufferBytes = 1'048'576;
constexpr int Md5Digits = 32;

//! Receives one content into a file, which takes its place at the end only.
class ContentReceiver
{
public:
    ContentReceiver(OperationRun &run, const QString &path, qint64 mostBytes)
        : m_run(run), m_file(path), m_mostBytes(mostBytes), m_hash(QCryptographicHash::Md5)
    {}

    //! \throws OperationFailure
    void receive(const QString &fileId)
    {
        if (!m_file.open(QIODevice::WriteOnly))
            throw OperationFailure{writeError()};
        m_run.ask([&] {
            const std::unique_ptr<QNetworkReply> reply(NetworkManager::instance()->get(
                m_run.address(QStringLiteral("base-service/files/") + fileId)));
            reply->setReadBufferSize(BufferBytes);
            QEventLoop loop;
            QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, [&] {
                take(reply.get());
                if (m_failure)
                    loop.quit();
            });
            QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
            if (!reply->isFinished())
                loop.exec();
            m_run.checkAborted();
            take(reply.get());
            if (m_failure)
                throw OperationFailure{*m_failure};
            m_tag = reply->rawHeader("ETag").replace('"', "");
            return true;
        });
        verify();
        if (!m_file.commit())
            throw OperationFailure{writeError()};
    }

private:
    void take(QNetworkReply *reply)
    {
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (status / 100 != 2 || m_failure) // of a refusal the body is a message
            return;
        const qint64 announced = reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
        const QByteArray data = reply->readAll();
        m_received += data.size();
        m_hash.addData(data);
        if (m_mostBytes > 0 && qMax(announced, m_received) > m_mostBytes)
            m_failure = VellError::of(VellError::Kind::TooLarge);
        else if (m_file.write(data) != data.size())
            m_failure = writeError();
        m_run.setProgress(m_received, qMax(announced, m_received));
    }

    void verify() const
    {
        if (m_tag.size() == Md5Digits && m_tag.toLower() != m_hash.result().toHex())
            throw OperationFailure{VellError::of(VellError::Kind::ServiceFailed)};
    }

    VellError writeError() const
    {
        return VellError::of(VellError::Kind::LocalFile, {},
                             m_file.fileName() + QStringLiteral(": ") + m_file.errorString());
    }

    OperationRun &m_run;
    QSaveFile m_file;
    const qint64 m_mostBytes;
    QCryptographicHash m_hash;
    qint64 m_received = 0;
    QByteArray m_tag;
    std::optional<VellError> m_failure;
};

} // namespace

VellResult<QString> *VellDocuments::content(const QString &fileId, const QString &path,
                                            qint64 mostBytes)
{
    return SessionAccess::start<QString>(m_session, Lane::List, [=](OperationRun &run) {
        ContentReceiver(run, path, mostBytes).receive(fileId);
        return path;
    });
}

VellResult<QString> *VellDocuments::contentMd5(const QString &fileId)
{
    return SessionAccess::start<QString>(m_session, Lane::Short, [fileId](OperationRun &run) {
        return run.ask([&] {
            const std::unique_ptr<QNetworkReply> reply(NetworkManager::instance()->get(
                run.address(QStringLiteral("base-service/files/") + fileId)));
            reply->setReadBufferSize(1); // only its head is of interest
            QEventLoop loop;
            const auto hasHead = [&reply] {
                const int status =
                    reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
                return status / 100 == 2;
            };
            QObject::connect(reply.get(), &QNetworkReply::metaDataChanged, &loop, [&] {
                reply->setReadBufferSize(0); // the words of a refusal are awaited
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
            DocumentLookup::requireFreeName(run, folderId, name);
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

VellResult<VellDocument> *VellDocuments::makeCurrent(const QString &id, const QString &fileId)
{
    return SessionAccess::start<VellDocument>(
        m_session, Lane::Short,
        [=](OperationRun &run) {
            run.change([&] {
                NetworkEventLoop loop(NetworkManager::instance()->putJson(
                    run.address(QStringLiteral("document-service/documents/") + id),
                    QJsonObject{{QStringLiteral("file"), fileId}}));
                loop.exec();
                return loop.isSuccessful();
            });
            return DocumentLookup::fetch(run, id);
        },
        [this](const VellDocument &document) { m_store->insert(document); });
}
