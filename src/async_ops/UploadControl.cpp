#include <async_ops/AsyncCreateDocument.h>

#include <VellNetwork/AsyncNetManager.h>
#include <VellNetwork/CFileUploadProxy.h>
#include <VellNetwork/NetworkEventLoop.h>

#include <QFile>
#include <QHttpMultiPart>
#include <QNetworkReply>

void AsyncCreateDocument::pause(bool pause)
{
    if (pause) {
        AsyncNetManager *manager = isChunked() ? chunkNetManager : netManager;
        if (manager) // null before the first chunk
            manager->pause();
        return;
    }

    canceled = false;
    if (isChunked()) {
        if (chunkIndex < chunkCount)
            fileChunkLoop();
        else
            uploadFinished(largeFile.fsFileId);
        return;
    }
    // Inverted, not set: if the file has been sent already, the next response is that of the document request.
    awaitingFile = !awaitingFile;
    closeFile();
    QHttpMultiPart *body = CFileUploadProxy::getFileHttpMultiPart(&file, doc.filePath);
    if (!body)
        return;
    // The old one remains connected: its responses are still handled.
    wireNetManager();
    postWholeFile(body);
}

void AsyncCreateDocument::cancel()
{
    canceled = true;
    for (NetworkEventLoop *loop : qAsConst(pendingLoops)) {
        if (!loop || loop->isFinished())
            continue;
        disconnect(loop, &NetworkEventLoop::uploadProgress, nullptr, nullptr);
        disconnect(loop, &NetworkEventLoop::errorEmit, nullptr, nullptr);
        loop->exit(0);
    }
    pendingLoops.clear();
    for (QNetworkReply *reply : qAsConst(pendingReplies)) {
        if (reply && !reply->isFinished())
            reply->ignoreSslErrors(); // not abort(): a reply that is waited for must finish
    }
    pendingReplies.clear();
    // Also for a large file, whose chunks continue.
    netManager->pause();
    closeFile();
}
