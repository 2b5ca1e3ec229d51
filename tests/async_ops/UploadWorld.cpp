#include "UploadWorld.h"

#include <support/UnequalFile.h>

#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

UploadWorld::UploadWorld()
{
    VellBaseApi::GetInstance().setBaseApi(server.baseApi());
    GetSoftCache()->setCurrentProjectId("p1");
}

VellDocument UploadWorld::makeFile(const QString &name, qint64 bytes) const
{
    const QString path = folder.filePath(name);
    writeUnequalFile(path, bytes);

    VellDocument doc;
    doc.name = name;
    doc.filePath = path;
    doc.fileSize = bytes;
    doc.type = "file";
    return doc;
}

QStringList UploadWorld::requestLines() const
{
    QStringList lines;
    for (const ScriptedRequest &request : server.requests())
        lines.append(QString::fromLatin1(request.verb) + QLatin1Char(' ')
                     + request.decodedTarget());
    return lines;
}

QString UploadWorld::requestWords() const
{
    QByteArrayList words;
    for (const ScriptedRequest &request : server.requests()) {
        if (request.target == "/base-service/files")
            words.append("file");
        else if (request.target == "/base-service/largefiles")
            words.append("chunk" + formField(formParts(request), "savedChunk"));
        else if (request.target.startsWith("/base-service/largefiles/md5/"))
            words.append("record");
        else if (request.target.startsWith("/base-service/md5/"))
            words.append("info");
        else
            words.append("document");
    }
    return QString::fromLatin1(words.join(' '));
}

QByteArray ChunkStore::record() const
{
    return "{\"_id\":\"" + id + "\",\"md5\":\"m\",\"fileName\":\"n\",\"fsFileId\":\"" + fsFileId
        + "\",\"totalChunk\":" + QByteArray::number(totalChunk)
        + ",\"savedChunk\":" + QByteArray::number(savedChunk) + '}';
}

ScriptedReply ChunkStore::answer(const ScriptedRequest &request)
{
    if (request.target.startsWith("/base-service/largefiles/md5/"))
        return ScriptedReply::json(id.isEmpty() ? "{}" : record());
    if (request.target.startsWith("/base-service/md5/"))
        return ScriptedReply::json("{\"_id\":\"" + infoId + "\"}");
    if (request.target != "/base-service/largefiles")
        return ScriptedReply::json("{\"_id\":\"d1\"}");

    const QList<FormPart> parts = formParts(request);
    id = "r1";
    totalChunk = formField(parts, "totalChunk").toInt();
    savedChunk = formField(parts, "savedChunk").toInt() + 1;
    sentChunks.append(savedChunk - 1);
    if (savedChunk == totalChunk)
        fsFileId = finishedFileId;
    return ScriptedReply::json(record());
}

JobSpies::JobSpies(AsyncCreateDocument *job)
{
    QObject::connect(job, &AsyncCreateDocument::createDocumentFinish, job,
                     [this](const VellDocument &doc) {
                         events.append("createDocumentFinish");
                         finished.append(doc);
                     });
    QObject::connect(job, &AsyncCreateDocument::error, job, [this](int code) {
        events.append("error");
        errors.append(code);
    });
    QObject::connect(job, &AsyncCreateDocument::finishUpload, job,
                     [this] { events.append("finishUpload"); });
    QObject::connect(job, &AsyncCreateDocument::uploadProgress, job,
                     [this](qint64 bytes, qint64 total) {
                         progress.append({bytes, total});
                     });
}

QList<FormPart> formParts(const ScriptedRequest &request)
{
    const QByteArray type = request.headers.value("content-type");
    const int at = type.indexOf("boundary=");
    if (!type.startsWith("multipart/form-data;") || at < 0)
        return {};
    QByteArray boundary = type.mid(at + 9);
    if (boundary.startsWith('"'))
        boundary = boundary.mid(1, boundary.size() - 2);

    QList<FormPart> parts;
    const QByteArray delimiter = "--" + boundary;
    int start = request.body.indexOf(delimiter);
    while (start >= 0) {
        start += delimiter.size() + 2;
        const int headersEnd = request.body.indexOf("\r\n\r\n", start);
        const int end = request.body.indexOf("\r\n" + delimiter, start);
        if (headersEnd < 0 || end < 0)
            break;
        FormPart part;
        const QList<QByteArray> lines =
            request.body.mid(start, headersEnd - start).replace("\r\n", "\n").split('\n');
        for (const QByteArray &line : lines) {
            const QByteArray value = line.mid(line.indexOf(':') + 1).trimmed();
            if (line.toLower().startsWith("content-disposition:"))
                part.disposition = value;
            else if (line.toLower().startsWith("content-type:"))
                part.contentType = value;
        }
        part.body = request.body.mid(headersEnd + 4, end - headersEnd - 4);
        parts.append(part);
        start = end + 2;
    }
    return parts;
}

QByteArray formField(const QList<FormPart> &parts, const QByteArray &name)
{
    for (const FormPart &part : parts) {
        if (part.disposition == "form-data; name=\"" + name + '"')
            return part.body;
    }
    return QByteArray();
}
