#include <transfer/UploadRun.h>

#include <transfer/TransferJournal.h>
#include <transfer/TransferText.h>
#include <transfer/UploadWatch.h>

#include <async_ops/AsyncCreateDocument.h>
#include <async_ops/VellUploadLimits.h>
#include <document_model/DocumentConversions.h>
#include <document_model/DocumentJson.h>

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/CFileUploadProxy.h>
#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>

#include <QEventLoop>
#include <QFile>
#include <QHttpMultiPart>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <memory>

namespace {

using Kind = VellError::Kind;

constexpr qint64 MostFrameBytes = 4096; // multipart overhead of a request with a chunk

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

} // namespace

template <typename Request>
void UploadRun::sendOrFindStored(Request request)
{
    try {
        request();
    } catch (const OperationFailure &failure) {
        // The response may have been lost. If this cannot be checked now, the next attempt checks it first.
        if (!failure.error.isTemporary())
            throw;
        std::optional<VellDocument> stored;
        try {
            stored = findStored(outcome().trace);
        } catch (const OperationFailure &) {
            service().checkAborted();
        }
        if (!stored)
            throw;
        finish(*stored);
    }
}

bool UploadRun::sendSmall(const Target &target)
{
    const bool isDecidedAhead = m_contentId.isEmpty();
    if (isDecidedAhead)
        m_contentId = sendContent();
    setStage(VellTransferState::Saving);
    if (isDecidedAhead && !isConfirmed(target)) {
        setStage(VellTransferState::Sending);
        return false;
    }
    requireUnchanged();
    noteTrace(target);
    sendOrFindStored([&] { finish(makeDocument(target, m_contentId)); });
    return true;
}

QString UploadRun::sendContent()
{
    hub().speeds.apply();
    RequestContext::current()->forgetFailure();
    QFile *opened = nullptr;
    QHttpMultiPart *const body = CFileUploadProxy::getFileHttpMultiPart(&opened, m_path);
    const std::unique_ptr<QFile> file(opened);
    if (!body)
        fail(Kind::LocalFile, TransferText::notReadable());
    QJsonObject answer;
    QEventLoop loop;
    AsyncNetManager manager;
    QObject::connect(&manager, &AsyncNetManager::netComplete, &loop, [&](const QByteArray &json) {
        answer = QJsonDocument::fromJson(json).object();
        loop.quit();
    });
    QObject::connect(&manager, QOverload<int>::of(&AsyncNetManager::error), &loop,
                     &QEventLoop::quit);
    QObject::connect(&manager, &AsyncNetManager::uploadProgress, &loop,
                     [&](qint64 sent, qint64 total) {
                         // Both values include the multipart overhead.
                         if (total > 0)
                             setDoneBytes(sizeBytes() * sent / total);
                     });
    manager.post(service().address(QStringLiteral("base-service/files")), body);
    wait(loop);
    requireUnchanged();
    service().throwFailure();
    const QString id = answer.value(QLatin1String("files")).toArray().first().toString();
    if (id.isEmpty())
        failForNow(Kind::Unclear, {});
    return id;
}

VellDocument UploadRun::makeDocument(const Target &target, const QString &fileId)
{
    RequestContext::current()->forgetFailure();
    QNetworkReply *reply = nullptr;
    if (target.isNew()) {
        reply = NetworkManager::instance()->postJson(
            service().address(QStringLiteral("document-service/projects/%1/documents")
                                  .arg(service().projectId())),
            {{QStringLiteral("type"), target.document.type},
             {QStringLiteral("category"), textOrNull(target.document.category)},
             {QStringLiteral("parentId"), textOrNull(target.document.parentId)},
             {QStringLiteral("name"), target.document.name},
             {QStringLiteral("file"), fileId}});
    } else {
        reply = NetworkManager::instance()->putJson(
            service().address(
                QStringLiteral("document-service/documents/%1").arg(target.document._id)),
            QJsonObject{{QStringLiteral("file"), fileId}});
    }
    NetworkEventLoop loop(reply);
    loop.exec();
    service().throwFailure();
    VellDocument document;
    VellPubDoc::jsonToDocObject(loop.object(), document);
    return document;
}

bool UploadRun::sendLarge(const Target &target)
{
    noteTrace(target);
    VellDocument wanted = target.document;
    VellPubDoc::getVellDocument(m_path, wanted);
    wanted.type = QStringLiteral("file");
    wanted.name = target.document.name;
    wanted.fileSize = sizeBytes();

    RequestContext::current()->forgetFailure();
    hub().speeds.apply();
    std::optional<VellDocument> stored;
    std::optional<VellError> failure;
    bool isConfirmedYet = true;
    qint64 firstBytes = sizeBytes();
    QEventLoop loop;
    bool isOver = false;
    const auto end = [&] {
        isOver = true;
        loop.quit();
    };
    UploadWatch watch(end);
    auto job = std::make_unique<AsyncCreateDocument>();
    QObject::connect(job.get(), &AsyncCreateDocument::createDocumentFinish, &loop,
                     [&](const VellDocument &document) {
                         stored = document;
                         end();
                     });
    QObject::connect(job.get(), &AsyncCreateDocument::error, &loop, [&] {
        const auto reason = RequestContext::current()->failure();
        failure = reason ? VellError::of(*reason) : VellError::of(Kind::Unclear);
        end();
    });
    QObject::connect(job.get(), &AsyncCreateDocument::uploadProgress, &loop, [&](qint64 sent) {
        watch.noteBytes(sent);
        firstBytes = std::min(firstBytes, sent);
        if (sent > firstBytes + VellUploadLimits::ChunkBytes + MostFrameBytes)
            outcome().hasMoved = true; // the service has received a chunk
        setDoneBytes(std::min(sent, sizeBytes() - 1));
        hub().speeds.apply();
    });
    // The last moment before the document is requested.
    QObject::connect(job.get(), &AsyncCreateDocument::finishUpload, &loop, [&] {
        setStage(VellTransferState::Saving);
        watch.stop();
        try {
            isConfirmedYet = isConfirmed(target);
        } catch (const OperationFailure &reason) {
            failure = reason.error;
        }
        if (isConfirmedYet && !failure) {
            watch.start();
            return;
        }
        job.reset();
        end();
    });
    watch.start();
    if (target.isNew())
        job->createDocument(QString(), wanted);
    else
        job->updateDocument(wanted.hostId, wanted);
    if (!isOver)
        wait(loop);
    job.reset();
    service().checkAborted();
    if (!isConfirmedYet) {
        setStage(VellTransferState::Sending);
        return false;
    }
    sendOrFindStored([&] {
        if (failure) {
            requireUnchanged(); // otherwise the service has refused a mixture of two contents
            throw OperationFailure{*failure};
        }
        if (!stored)
            fail(Kind::Unclear, TransferText::noEnd());
        finish(*stored);
    });
    return true;
}

void UploadRun::noteTrace(const Target &target)
{
    outcome().trace = {target.document.name, target.base};
    if (hub().journal) {
        hub().journal->writeTrace(record().id, outcome().trace);
        hub().journal->wait();
    }
}

void UploadRun::finish(const VellDocument &document)
{
    // A response without a document does not show the outcome.
    if (document._id.isEmpty())
        fail(Kind::Unclear, {});
    if (document.fileSize != sizeBytes())
        failForNow(Kind::ChangedMeanwhile, TransferText::changesMeanwhile());
    outcome().document = document;
    setDoneBytes(sizeBytes());
}
