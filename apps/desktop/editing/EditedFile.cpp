#include <desktop/editing/EditedFile.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace desktop {

namespace {

QString textOf(const QDateTime &time)
{
    return time.toUTC().toString(Qt::ISODateWithMs);
}

QDateTime timeOf(const QJsonValue &text)
{
    return QDateTime::fromString(text.toString(), Qt::ISODateWithMs);
}

QJsonObject toJson(const EditedFile &file)
{
    const VellDocument &document = file.document;
    return {{QStringLiteral("path"), file.path},
            {QStringLiteral("address"), file.address},
            {QStringLiteral("project"), document.projectId},
            {QStringLiteral("id"), document._id},
            {QStringLiteral("name"), document.name},
            {QStringLiteral("parent"), document.parentId},
            {QStringLiteral("content"), document.fileId},
            {QStringLiteral("size"), QString::number(document.fileSize)},
            {QStringLiteral("updatedAt"), textOf(document.updatedAt)},
            {QStringLiteral("localSize"), QString::number(file.localSize)},
            {QStringLiteral("localTime"), textOf(file.localTime)}};
}

EditedFile fromJson(const QJsonObject &json)
{
    const auto text = [&json](const char *key) {
        return json.value(QLatin1String(key)).toString();
    };
    EditedFile file;
    file.path = text("path");
    file.address = text("address");
    file.document.projectId = text("project");
    file.document._id = text("id");
    file.document.name = text("name");
    file.document.parentId = text("parent");
    file.document.fileId = text("content");
    file.document.type = QStringLiteral("file");
    file.document.fileSize = text("size").toLongLong();
    file.document.updatedAt = timeOf(json.value(QLatin1String("updatedAt")));
    file.localSize = text("localSize").toLongLong();
    file.localTime = timeOf(json.value(QLatin1String("localTime")));
    return file;
}

} // namespace

bool EditedFile::isChanged() const
{
    const QFileInfo now(path);
    return now.isFile() && (now.size() != localSize || now.lastModified() != localTime);
}

void EditedFile::noteLocalState()
{
    const QFileInfo now(path);
    localSize = now.size();
    localTime = now.lastModified();
}

QList<EditedFile> edited_file_list::read(const QString &path)
{
    QFile file(path);
    QList<EditedFile> files;
    if (!file.open(QIODevice::ReadOnly))
        return files;
    const QJsonArray array = QJsonDocument::fromJson(file.readAll()).array();
    for (const QJsonValue &value : array)
        files.append(fromJson(value.toObject()));
    return files;
}

bool edited_file_list::write(const QString &path, const QList<EditedFile> &files)
{
    QJsonArray array;
    for (const EditedFile &file : files)
        array.append(toJson(file));
    const QString folder = QFileInfo(path).path();
    QDir().mkpath(folder);
    // Only the user may read the documents.
    QFile::setPermissions(folder,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(QJsonDocument(array).toJson());
    return file.commit();
}

} // namespace desktop
