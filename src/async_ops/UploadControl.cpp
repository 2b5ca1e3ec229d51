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
        if (manager) // null while the file is hashed and the store is asked
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
    // Inverted, not set: a file that had gone up already would be taken for the document's reply.
    awaitingFile = !awaitingFile;
    closeFile();
    QHttpMultiPart *body = CFileUploadProxy::getFileHttpMultiPart(&file, doc.filePath);
    if (!body)
        return;
    // The one before stays connected: what it still delivers counts.
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
            reply->ignoreSslErrors(); // not abort(): a reply that is waited for runs to its end
    }
    pendingReplies.clear();
    // Of a large file too: its running chunk is left alone and the next ones follow.
    netManager->pause();
    closeFile();
}
