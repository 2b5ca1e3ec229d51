#include <service/api/Routes.h>
#include <service/api/Session.h>
#include <service/http/HttpMessages.h>
#include <service/http/MultipartReader.h>
#include <service/http/Router.h>
#include <service/records/ChunkUpload.h>
#include <service/records/Names.h>

#include <QHash>

namespace service {

namespace {

constexpr int MaxFieldBytes = 4096;
constexpr int MaxFileNameBytes = 1024;
constexpr qint64 MaxChunkedBytes = Q_INT64_C(1) << 46;

struct ChunkForm
{
    std::unique_ptr<IncomingFile> bytes;
    QHash<QString, QString> fields;

    qint64 number(const char *name) const
    {
        bool isNumber = false;
        const qint64 value = fields.value(QLatin1String(name)).toLongLong(&isNumber);
        if (!isNumber || value < 0) {
            throw HttpError(
                400,
                QStringLiteral("The form's \"%1\" must be a number.").arg(QLatin1String(name)));
        }
        return value;
    }
};

ChunkForm readForm(HttpRequest &request, ContentStore &contents)
{
    ChunkForm form;
    MultipartReader reader(*request.body, request.header("content-type"));
    MultipartReader::Part part;
    while (reader.nextPart(part)) {
        if (part.name != QLatin1String("file")) {
            form.fields.insert(part.name, QString::fromUtf8(reader.readField(MaxFieldBytes)));
            continue;
        }
        if (form.bytes)
            throw HttpError(400, QStringLiteral("The form has more than one \"file\"."));
        // The fields that say where it belongs come behind it.
        form.bytes = contents.newFile();
        reader.readPart([&form](const char *data, qint64 length) {
            if (form.bytes->size() + length > LargeFile::ChunkBytes)
                throw HttpError(400,
                                QStringLiteral("The chunk is longer than %1 bytes.")
                                    .arg(LargeFile::ChunkBytes));
            form.bytes->write(data, length);
        });
    }
    if (!form.bytes)
        throw HttpError(400, QStringLiteral("The form has no \"file\"."));
    return form;
}

//! What the form says, checked for sense in itself; whether it fits the record is asked later.
Chunk readChunk(const ChunkForm &form)
{
    Chunk chunk;
    chunk.md5 = form.fields.value(QStringLiteral("md5")).toLower();
    if (!isMd5(chunk.md5))
        throw HttpError(400, QStringLiteral("The form's \"md5\" is no MD5."));
    chunk.fileName = form.fields.value(QStringLiteral("fileName"));
    requireShortText(chunk.fileName, QStringLiteral("The file's name"), MaxFileNameBytes);
    chunk.fileSize = form.number("fileSize");
    if (chunk.fileSize == 0 || chunk.fileSize > MaxChunkedBytes)
        throw HttpError(400, QStringLiteral("A file of that size does not come in chunks."));
    LargeFile file;
    file.fileSize = chunk.fileSize;
    if (form.number("totalChunk") != file.totalChunk())
        throw HttpError(400,
                        QStringLiteral("A file of %1 bytes has %2 chunks.")
                            .arg(chunk.fileSize)
                            .arg(file.totalChunk()));
    const qint64 index = form.number("savedChunk");
    if (index >= file.totalChunk())
        throw HttpError(400, QStringLiteral("The file has no chunk %1.").arg(index));
    chunk.index = static_cast<int>(index);
    if (form.number("chunkSize") != form.bytes->size()
        || form.bytes->size() != file.chunkLength(chunk.index)) {
        throw HttpError(400,
                        QStringLiteral("Chunk %1 of this file has %2 bytes, but %3 came.")
                            .arg(index)
                            .arg(file.chunkLength(chunk.index))
                            .arg(form.bytes->size()));
    }
    chunk.bytes = form.bytes.get();
    return chunk;
}

ChunkUpload uploadOf(Session &session)
{
    return {session.database, session.context.contents, session.user().id};
}

HttpResponse postChunk(HttpRequest &request, Session &session)
{
    if (!session.access.mayAnywhere(Action::Upload))
        throw HttpError(403, QStringLiteral("You have no project into which you may upload."));
    const ChunkForm form = readForm(request, session.context.contents);
    const Chunk chunk = readChunk(form);
    const bool isToBeForgotten =
        session.fault && session.fault->kind == FaultRule::Kind::ForgetChunk;
    const KeyedLocks::Holder lock(session.context.uploadLocks, chunk.md5);
    return HttpResponse::json(uploadOf(session).take(chunk, isToBeForgotten));
}

HttpResponse getRecord(HttpRequest &request, Session &session)
{
    const QJsonObject record = uploadOf(session).find(request.captures.at(0).toLower());
    if (record.isEmpty())
        throw HttpError(404, QStringLiteral("Nothing is held of a file with this MD5."));
    return HttpResponse::json(record);
}

HttpResponse deleteRecord(HttpRequest &request, Session &session)
{
    const QString id = request.captures.at(0);
    if (Files(session.database).find(id))
        throw HttpError(409, QStringLiteral("This upload is complete; there is nothing to drop."));
    LargeFiles records(session.database);
    std::optional<LargeFile> record = records.find(id);
    if (!record)
        throw HttpError(404, QStringLiteral("There is no upload %1.").arg(id.left(60)));
    if (record->createdBy != session.user().id)
        throw HttpError(403, QStringLiteral("Another user has begun this upload."));
    const KeyedLocks::Holder lock(session.context.uploadLocks, record->md5);
    record = records.find(id); // its last chunk may have come meanwhile
    if (record)
        uploadOf(session).drop(*record);
    return HttpResponse::json(QJsonObject{{QStringLiteral("_id"), id}});
}

} // namespace

void addLargeFileRoutes(Router &router)
{
    router.add("POST", "base-service/largefiles", postChunk);
    router.add("GET", "base-service/largefiles/md5/*", getRecord);
    router.add("DELETE", "base-service/largefiles/*", deleteRecord);
}

} // namespace service
