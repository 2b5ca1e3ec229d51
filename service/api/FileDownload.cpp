#include <service/api/FileDownload.h>

#include <service/http/ByteRange.h>
#include <service/records/Files.h>
#include <service/storage/ContentStore.h>

#include <QUrl>

namespace service {

namespace {

HttpResponse rangeOf(const HttpRequest &request, const FileBody &whole, const QByteArray &etag)
{
    HttpResponse response;
    response.file = whole;
    // Ranges apply to GET only, and a date never matches because contents have none.
    if (request.isHead
        || (request.headers.contains("if-range") && request.header("if-range") != etag))
        return response;
    const ByteRange range = parseRange(request.header("range"), whole.length);
    const QByteArray size = QByteArray::number(whole.length);
    if (range.kind == ByteRange::Kind::Unsatisfiable) {
        response = HttpResponse::error(416, QStringLiteral("The file ends before that range."));
        response.addHeader("Content-Range", "bytes */" + size);
    } else if (range.kind == ByteRange::Kind::Part) {
        response.status = 206;
        response.file.offset = range.offset;
        response.file.length = range.length;
        response.addHeader("Content-Range",
                           "bytes " + QByteArray::number(range.offset) + '-'
                               + QByteArray::number(range.offset + range.length - 1) + '/' + size);
    }
    return response;
}

QByteArray disposition(const QString &saveAs)
{
    // Contents are uploaded by users: none may be shown as a page of this site.
    QByteArray value = QByteArrayLiteral("attachment");
    if (!saveAs.isEmpty())
        value += "; filename*=UTF-8''" + QUrl::toPercentEncoding(saveAs);
    return value;
}

} // namespace

HttpResponse downloadResponse(const HttpRequest &request, const StoredFile &file,
                              const ContentStore &contents, const QString &saveAs)
{
    const QByteArray etag = '"' + file.md5.toLatin1() + '"';
    HttpResponse response;
    if (request.headers.contains("if-match")
        && !namesTag(request.header("if-match"), etag, TagComparison::Strong))
        response = HttpResponse::error(412, QStringLiteral("The file is another one."));
    else if (namesTag(request.header("if-none-match"), etag, TagComparison::Weak))
        response.status = 304;
    else
        response = rangeOf(request, {contents.contentPath(file.md5), 0, file.size}, etag);
    if (response.status < 400) {
        response.contentType = QByteArrayLiteral("application/octet-stream");
        response.addHeader("Accept-Ranges", "bytes");
        response.addHeader("ETag", etag);
        response.addHeader("Content-Disposition", disposition(saveAs));
    }
    return response;
}

} // namespace service
