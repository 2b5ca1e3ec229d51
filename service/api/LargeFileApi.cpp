#include <service/api/BodyBuffer.h>
#include <service/api/RequestState.h>
#include <service/api/Routes.h>
#include <service/api/UploadForm.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/ChunkUpload.h>
#include <service/records/Names.h>

#include <memory>

namespace service {

namespace {

constexpr qint64 MaxFormBytes = LargeFile::ChunkBytes + Q_INT64_C(64) * 1024;
constexpr int MaxFileNameBytes = 1024;
constexpr qint64 MaxChunkedBytes = Q_INT64_C(1) << 46;

qint64 number(const UploadForm &form, const char *name)
{
    bool isNumber = false;
    const qint64 value = form.field(name).toLongLong(&isNumber);
    if (!isNumber || value < 0) {
        throw HttpError(
            400, QStringLiteral("The form's \"%1\" must be a number.").arg(QLatin1String(name)));
    }
    return value;
}

//! Returns the chunk in the form, whose fields are checked against each other; they are compared with the upload record later.
Chunk readChunk(const UploadForm &form, BodyBuffer &bytes)
{
    Chunk chunk;
    chunk.md5 = form.field("md5").toLower();
    if (!isMd5(chunk.md5))
        throw HttpError(400, QStringLiteral("The form's \"md5\" is no MD5."));
    chunk.fileName = form.field("fileName");
    requireShortText(chunk.fileName, QStringLiteral("The file's name"), MaxFileNameBytes);
    chunk.fileSize = number(form, "fileSize");
    if (chunk.fileSize == 0 || chunk.fileSize > MaxChunkedBytes)
        throw HttpError(400, QStringLiteral("A file of that size does not come in chunks."));
    LargeFile file;
    file.fileSize = chunk.fileSize;
    if (number(form, "totalChunk") != file.totalChunk())
        throw HttpError(400,
                        QStringLiteral("A file of %1 bytes has %2 chunks.")
                            .arg(chunk.fileSize)
                            .arg(file.totalChunk()));
    const qint64 index = number(form, "savedChunk");
    if (index >= file.totalChunk())
        throw HttpError(400, QStringLiteral("The file has no chunk %1.").arg(index));
    chunk.index = static_cast<int>(index);
    if (number(form, "chunkSize") != bytes.size()
        || bytes.size() != file.chunkLength(chunk.index)) {
        throw HttpError(400,
                        QStringLiteral("Chunk %1 of this file has %2 bytes, but %3 came.")
                            .arg(index)
                            .arg(file.chunkLength(chunk.index))
                            .arg(bytes.size()));
    }
    chunk.bytes = bytes.take();
    return chunk;
}

ChunkUpload uploadOf(RequestState &state)
{
    return {state.database, state.context.contents, state.access};
}

HttpResponse takeChunk(const UploadForm &form, BodyBuffer &bytes, RequestState &state)
{
    const Chunk chunk = readChunk(form, bytes);
    const bool isToBeForgotten = state.fault && state.fault->kind == FaultRule::Kind::ForgetChunk;
    const QJsonObject record = uploadOf(state).take(chunk, isToBeForgotten);
    state.context.metrics.countChunk();
    if (!record.value(QStringLiteral("fsFileId")).toString().isEmpty())
        state.context.metrics.countUpload();
    return HttpResponse::json(record);
}

std::unique_ptr<BodySink> postChunk(HttpRequest &request, RequestState &state)
{
    state.access.requireAnywhere(Action::Upload);
    if (request.bodyLength > MaxFormBytes)
        throw HttpError(
            413, QStringLiteral("A form with one chunk has at most %1 bytes.").arg(MaxFormBytes));
    // The fields that tell which chunk it is follow the bytes.
    const auto bytes = std::make_shared<BodyBuffer>(state.context);
    return std::make_unique<UploadForm>(
        request,
        QStringList{QStringLiteral("md5"), QStringLiteral("fileName"), QStringLiteral("totalChunk"),
                    QStringLiteral("savedChunk"), QStringLiteral("fileSize"),
                    QStringLiteral("chunkSize")},
        [bytes](const char *data, qint64 length) {
            if (bytes->size() + length > LargeFile::ChunkBytes)
                throw HttpError(400,
                                QStringLiteral("The chunk is longer than %1 bytes.")
                                    .arg(LargeFile::ChunkBytes));
            bytes->append(data, length);
        },
        [bytes, &state](const UploadForm &form) { return takeChunk(form, *bytes, state); });
}

HttpResponse getUpload(HttpRequest &request, RequestState &state)
{
    const QJsonObject upload = uploadOf(state).find(request.captures.at(0).toLower());
    if (upload.isEmpty())
        throw HttpError(404, QStringLiteral("Nothing is held of a file with this MD5."));
    return HttpResponse::json(upload);
}

HttpResponse deleteUpload(HttpRequest &request, RequestState &state)
{
    const QString id = request.captures.at(0);
    uploadOf(state).drop(id);
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), id}});
}

} // namespace

void addLargeFileRoutes(Router &router)
{
    router.addUpload("POST", "base-service/largefiles", postChunk);
    router.add("GET", "base-service/largefiles/md5/*", getUpload);
    router.add("DELETE", "base-service/largefiles/*", deleteUpload);
}

} // namespace service
