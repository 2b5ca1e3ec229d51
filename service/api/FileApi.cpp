#include <service/api/FileDownload.h>
#include <service/api/Routes.h>
#include <service/api/Session.h>
#include <service/http/HttpMessages.h>
#include <service/http/MultipartReader.h>
#include <service/http/Router.h>
#include <service/records/Files.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

HttpResponse uploadFile(HttpRequest &request, Session &session)
{
    if (!session.access.mayAnywhere(Action::Upload))
        throw HttpError(403, QStringLiteral("You have no project into which you may upload."));
    MultipartReader form(*request.body, request.header("content-type"));
    MultipartReader::Part part;
    std::unique_ptr<IncomingFile> content;
    StoredFile file;
    while (form.nextPart(part)) {
        if (part.name != QLatin1String("file"))
            continue;
        if (content)
            throw HttpError(400, QStringLiteral("The form has more than one \"file\"."));
        content = session.context.contents.newFile();
        file.name = part.fileName;
        form.readPart(
            [&content](const char *data, qint64 length) { content->write(data, length); });
    }
    if (!content)
        throw HttpError(400, QStringLiteral("The form has no \"file\"."));
    file.size = content->size();
    // Only when the content is safe on the disk does a row say that it exists.
    file.md5 = QString::fromLatin1(session.context.contents.keep(*content));

    Transaction transaction(session.database);
    file = Files(session.database).insert(file, session.user().id);
    transaction.commit();
    return HttpResponse::json(QJsonObject{{QStringLiteral("files"), QJsonArray{file.id}},
                                          {QStringLiteral("md5"), file.md5},
                                          {QStringLiteral("fileSize"), file.size}});
}

HttpResponse downloadFile(HttpRequest &request, Session &session)
{
    const QString id = request.captures.at(0);
    Files files(session.database);
    const std::optional<StoredFile> file = files.find(id);
    // The same answer for both, so that nobody learns which ids exist.
    if (!file || !files.mayDownload(id, session.access))
        throw HttpError(
            404, QStringLiteral("There is no file %1 that you may download.").arg(id.left(60)));

    HttpResponse response = downloadResponse(request, *file, session.context.contents);
    // A resumed download was noted when it began.
    if (response.status == 200 || (response.status == 206 && response.file.offset == 0)) {
        Transaction transaction(session.database);
        files.noteDownload(id, session.user().id);
        transaction.commit();
    }
    return response;
}

HttpResponse md5Info(HttpRequest &request, Session &session)
{
    const QString md5 = request.captures.at(0).toLower();
    const std::optional<StoredFile> file = Files(session.database).findByMd5(md5);
    if (!file)
        throw HttpError(404, QStringLiteral("There is no file with this MD5."));
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), file->id},
                                          {QStringLiteral("md5"), file->md5},
                                          {QStringLiteral("fileSize"), file->size},
                                          {QStringLiteral("fileName"), file->name}});
}

} // namespace

void addFileRoutes(Router &router)
{
    router.add("POST", "base-service/files", uploadFile);
    router.add("GET", "base-service/files/*", downloadFile);
    router.add("GET", "base-service/md5/*/info", md5Info);
}

} // namespace service
