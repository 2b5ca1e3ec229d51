#include <service/api/FileDownload.h>
#include <service/api/RequestState.h>
#include <service/api/Routes.h>
#include <service/api/UploadForm.h>
#include <service/http/HttpMessages.h>
#include <service/http/Router.h>

namespace service {

namespace {

HttpResponse keepFile(IncomingFile &content, const UploadForm &form, RequestState &state)
{
    const StoredFile file = state.contents.keep(content, form.fileName());
    state.context.metrics.countUpload();
    return HttpResponse::json(QJsonObject{{QStringLiteral("files"), QJsonArray{file.id}},
                                          {QStringLiteral("md5"), file.md5},
                                          {QStringLiteral("fileSize"), file.size}});
}

std::unique_ptr<BodySink> uploadFile(HttpRequest &request, RequestState &state)
{
    state.access.requireAnywhere(Action::Upload);
    const std::shared_ptr<IncomingFile> content = state.context.contents.newFile();
    return std::make_unique<UploadForm>(
        request, QStringList(),
        [content](const char *data, qint64 length) { content->write(data, length); },
        [content, &state](const UploadForm &form) { return keepFile(*content, form, state); });
}

HttpResponse downloadFile(HttpRequest &request, RequestState &state)
{
    const StoredFile file = state.contents.requireForDownload(request.captures.at(0));
    HttpResponse response = downloadResponse(request, file, state.context.contents);
    // A resumed download was recorded when it began.
    const bool isBegin =
        response.status == 200 || (response.status == 206 && response.file.offset == 0);
    if (isBegin && !request.isHead)
        Files(state.database).noteDownload(file.id, state.user().id);
    return response;
}

HttpResponse md5Info(HttpRequest &request, RequestState &state)
{
    const std::optional<StoredFile> file =
        state.contents.findByMd5(request.captures.at(0).toLower());
    if (!file)
        throw HttpError(404, QStringLiteral("There is no file with this MD5 that you may use."));
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), file->id},
                                          {QStringLiteral("md5"), file->md5},
                                          {QStringLiteral("fileSize"), file->size},
                                          {QStringLiteral("fileName"), file->name}});
}

} // namespace

void addFileRoutes(Router &router)
{
    router.addUpload("POST", "base-service/files", uploadFile);
    router.add("GET", "base-service/files/*", downloadFile);
    router.add("GET", "base-service/md5/*/info", md5Info);
}

} // namespace service
