#include <async_ops/AsyncCreateDocument.h>

#include <async_ops/RunAndWait.h>
#include <async_ops/VellUploadLimits.h>
#include <document_model/DocumentJson.h>

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/CFileUploadProxy.h>
#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellPublicFun/VellPub.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QFile>
#include <QHttpMultiPart>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>

#include <memory>

namespace {

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QString uploadedFileId(const QByteArray &content)
{
    const QJsonArray files =
        QJsonDocument::fromJson(content).object().value(QLatin1String("files")).toArray();
    for (const QJsonValue &file : files) {
        QString id = file.toString();
        if (!id.isEmpty())
            return id;
    }
    return QString();
}

VellDocument documentOf(const QByteArray &content)
{
    VellDocument document;
    QJsonParseError error{};
    const QJsonObject object = QJsonDocument::fromJson(content, &error).object();
    if (error.error == QJsonParseError::NoError) {
        VellPubDoc::jsonToDocObject(object, document);
        // A new document has its file at the top level.
        document.fileId = object.value(QLatin1String("fileId")).toString();
    }
    return document;
}

} // namespace

AsyncCreateDocument::AsyncCreateDocument(QObject *parent) : QObject(parent)
{
    // So that errors of the transport can also be used in queued connections.
    static const int networkError =
        qRegisterMetaType<QNetworkReply::NetworkError>("QNetworkReply::NetworkError");
    Q_UNUSED(networkError)
    wireNetManager();
}

AsyncCreateDocument::~AsyncCreateDocument()
{
    delete netManager;
    closeFile();
}

void AsyncCreateDocument::wireNetManager()
{
    netManager = new AsyncNetManager(this);
    connect(netManager, &AsyncNetManager::netComplete, this, &AsyncCreateDocument::uploadComplete);
    connect(netManager, &AsyncNetManager::uploadProgress, this,
            &AsyncCreateDocument::uploadProgress);
    connect(netManager, QOverload<QNetworkReply::NetworkError>::of(&AsyncNetManager::error), this,
            [this](QNetworkReply::NetworkError code) { Q_EMIT error(code); });
}

bool AsyncCreateDocument::isChunked() const
{
    return static_cast<quint64>(doc.fileSize) > VellUploadLimits::WholeFileLimit;
}

void AsyncCreateDocument::createDocument(const QString &hostId, const VellDocument &record)
{
    isCreate = true;
    start(hostId, record);
}

void AsyncCreateDocument::updateDocument(const QString &hostId, const VellDocument &record)
{
    isCreate = false;
    start(hostId, record);
}

void AsyncCreateDocument::start(const QString &hostId, const VellDocument &record)
{
    doc = record;
    doc.hostId = hostId;
    closeFile();
    std::unique_ptr<QHttpMultiPart> body(
        CFileUploadProxy::getFileHttpMultiPart(&file, doc.filePath));
    if (!body)
        return;
    if (!isChunked()) {
        postWholeFile(body.release());
        return;
    }

    const QPointer<AsyncCreateDocument> self(this);
    const QString md5 = runAndWait([path = doc.filePath] { return VellPub::getFileMd5(path); });
    if (!self)
        return;
    fileMd5 = md5;
    // Only reached if a small file was passed to the same job meanwhile.
    if (static_cast<quint64>(doc.fileSize) < VellUploadLimits::WholeFileLimit) {
        const QString fileId = getFileInfoId(fileMd5);
        if (!self)
            return;
        if (fileId.isEmpty())
            postWholeFile(body.release());
        else
            addOrUpdate(fileId);
        return;
    }
    fileChunk();
}

void AsyncCreateDocument::postWholeFile(QHttpMultiPart *body)
{
    netManager->post(VellBaseApi::GetInstance().getBaseApi() + QLatin1String("base-service/files"),
                     body);
}

void AsyncCreateDocument::uploadComplete(const QByteArray &content)
{
    closeFile();
    if (content.isEmpty()) {
        Q_EMIT createDocumentFinish(VellDocument());
        return;
    }
    if (!awaitingFile) {
        if (isCreate)
            addDocumentFinish(content);
        else
            updateDocFinish(content);
        return;
    }
    // Remains connected for a new version: the progress includes the document request.
    if (isCreate)
        disconnect(netManager, &AsyncNetManager::uploadProgress, this,
                   &AsyncCreateDocument::uploadProgress);
    addOrUpdate(uploadedFileId(content));
}

void AsyncCreateDocument::addOrUpdate(const QString &fileId)
{
    if (isCreate)
        addDocument(fileId);
    else
        updateDoc(fileId);
}

void AsyncCreateDocument::addDocument(const QString &fileId)
{
    closeFile();
    if (fileId.isEmpty())
        return;
    QJsonObject body{
        {QStringLiteral("type"), doc.type},
        {QStringLiteral("category"), textOrNull(doc.category)},
        {QStringLiteral("parentId"), textOrNull(doc.parentId)},
        {QStringLiteral("name"), doc.name},
        {QStringLiteral("file"), fileId},
    };
    const QString url = VellBaseApi::GetInstance().getBaseApi()
        + QStringLiteral("document-service/projects/%1/documents")
              .arg(GetSoftCache()->currentProjectId());
    netManager->post(url, body);
    awaitingFile = !awaitingFile;
}

void AsyncCreateDocument::addDocumentFinish(const QByteArray &content)
{
    const QPointer<AsyncCreateDocument> self(this);
    Q_EMIT createDocumentFinish(documentOf(content));
    if (self)
        awaitingFile = !awaitingFile;
}

void AsyncCreateDocument::updateDoc(const QString &fileId)
{
    closeFile();
    // Also sent without a file identifier: the service refuses it then.
    QJsonObject body{
        {QStringLiteral("hostId"), doc.hostId},
        {QStringLiteral("type"), doc.type},
        {QStringLiteral("category"), textOrNull(doc.category)},
        {QStringLiteral("parentId"), textOrNull(doc.parentId)},
        {QStringLiteral("name"), doc.name},
        {QStringLiteral("file"), fileId},
    };
    const QString url = VellBaseApi::GetInstance().getBaseApi()
        + QStringLiteral("document-service/documents/%1").arg(doc._id);
    netManager->put(url, body);
    awaitingFile = !awaitingFile;
}

void AsyncCreateDocument::updateDocFinish(const QByteArray &content)
{
    const QPointer<AsyncCreateDocument> self(this);
    // Twice, so that after an update the job still handles responses as those of the document request.
    awaitingFile = !awaitingFile;
    Q_EMIT createDocumentFinish(documentOf(content));
    if (self)
        awaitingFile = !awaitingFile;
}

QString AsyncCreateDocument::getFileInfoId(const QString &md5)
{
    NetworkEventLoop loop(
        NetworkManager::instance()->get(VellBaseApi::GetInstance().getBaseApi()
                                        + QStringLiteral("base-service/md5/%1/info").arg(md5)));
    loop.exec();
    return loop.object().value(QLatin1String("_id")).toString();
}

void AsyncCreateDocument::closeFile()
{
    delete file;
    file = nullptr;
}
