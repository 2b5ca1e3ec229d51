#include <service/storage/ContentStore.h>

#include <QDateTime>
#include <QDirIterator>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace service {

namespace {

constexpr qint64 ReadBlock = Q_INT64_C(256) * 1024;

QString uniqueName()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QString folderOf(const QString &path)
{
    return QFileInfo(path).path();
}

} // namespace

IncomingFile::IncomingFile(ContentStore &store, const QString &path)
    : m_store(store), m_path(path), m_file(path, RawFile::Mode::CreateNew)
{}

IncomingFile::~IncomingFile()
{
    if (m_isKept)
        return;
    QFile::remove(m_path);
    m_store.releaseBytes(m_size);
}

void IncomingFile::write(const char *data, qint64 length)
{
    m_store.reserveBytes(length);
    m_size += length;
    m_file.writeAt(m_size - length, data, length);
    m_hash.add(data, length);
}

ContentStore::ContentStore(const DataFolder &folder, qint64 quotaBytes)
    : m_folder(folder), m_quotaBytes(quotaBytes)
{}

void ContentStore::open(bool isShared)
{
    const QDateTime yesterday = QDateTime::currentDateTimeUtc().addDays(-1);
    QDirIterator leftOver(m_folder.temporary(), QDir::Files);
    while (leftOver.hasNext()) {
        leftOver.next();
        if (!isShared || leftOver.fileInfo().lastModified() < yesterday)
            QFile::remove(leftOver.filePath());
    }
    if (m_quotaBytes == 0)
        return;
    qint64 used = 0;
    for (const QString &place : {m_folder.contents(), m_folder.parts(), m_folder.aside()}) {
        QDirIterator files(place, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            files.next();
            used += files.fileInfo().size();
        }
    }
    m_usedBytes = used;
}

std::unique_ptr<IncomingFile> ContentStore::newFile()
{
    return std::make_unique<IncomingFile>(*this,
                                          m_folder.temporary() + QLatin1Char('/') + uniqueName());
}

QString ContentStore::contentPath(const QString &md5) const
{
    return QStringLiteral("%1/%2/%3/%4").arg(m_folder.contents(), md5.left(2), md5.mid(2, 2), md5);
}

bool ContentStore::holds(const QString &md5, qint64 size) const
{
    const QFileInfo content(contentPath(md5));
    return content.isFile() && content.size() == size;
}

ContentDigest ContentStore::digestOf(const QString &path) const
{
    const RawFile content(path, RawFile::Mode::ReadOnly);
    ContentHash hash;
    std::vector<char> block(static_cast<size_t>(ReadBlock));
    qint64 offset = 0;
    while (const qint64 count = content.readAt(offset, block.data(), ReadBlock)) {
        hash.add(block.data(), count);
        offset += count;
    }
    return hash.result();
}

void ContentStore::keep(IncomingFile &file, const QString &md5)
{
    file.m_file.sync();
    nameContent(file.m_path, md5);
    file.m_isKept = true;
}

void ContentStore::keepPart(const QString &part, const QString &md5)
{
    nameContent(partPath(part), md5);
    syncFolder(m_folder.parts());
}

void ContentStore::copyIn(const QString &path, const QString &md5)
{
    const QString copy = m_folder.temporary() + QLatin1Char('/') + uniqueName();
    copyFile(path, copy);
    nameContent(copy, md5);
}

void ContentStore::nameContent(const QString &from, const QString &md5)
{
    const QString path = contentPath(md5);
    const qint64 replaced = QFileInfo(path).size();
    const bool isNewFolder = !QFileInfo::exists(folderOf(path));
    makePrivateFolder(folderOf(folderOf(path)));
    makePrivateFolder(folderOf(path));
    renameFile(from, path);
    releaseBytes(replaced);
    syncFolder(folderOf(path));
    if (isNewFolder) {
        syncFolder(folderOf(folderOf(path)));
        syncFolder(m_folder.contents());
    }
}

QString ContentStore::partPath(const QString &part) const
{
    return m_folder.parts() + QLatin1Char('/') + part;
}

void ContentStore::writePart(const QString &part, qint64 offset, const QByteArray &bytes)
{
    const QString path = partPath(part);
    const bool isNew = !QFile::exists(path);
    RawFile file(path, RawFile::Mode::ReadWrite);
    const qint64 before = file.size();
    const qint64 growth = std::max<qint64>(0, offset + bytes.size() - before);
    reserveBytes(growth);
    try {
        file.writeAt(offset, bytes.constData(), bytes.size());
        file.sync();
    } catch (const StorageError &) {
        releaseBytes(growth - (file.size() - before));
        throw;
    }
    if (isNew)
        syncFolder(m_folder.parts());
}

void ContentStore::dropPart(const QString &part)
{
    remove(partPath(part));
}

QString ContentStore::moveAside(const QString &path)
{
    QString target =
        QStringLiteral("%1/%2.%3").arg(m_folder.aside(), QFileInfo(path).fileName(), uniqueName());
    renameFile(path, target);
    syncFolder(folderOf(path));
    syncFolder(m_folder.aside());
    return target;
}

void ContentStore::remove(const QString &path)
{
    const qint64 size = QFileInfo(path).size();
    if (QFile::remove(path))
        releaseBytes(size);
}

void ContentStore::reserveBytes(qint64 bytes)
{
    const qint64 used = m_usedBytes += bytes;
    if (m_quotaBytes > 0 && used > m_quotaBytes) {
        m_usedBytes -= bytes;
        throw StorageError(QStringLiteral("writing above the quota"), ENOSPC);
    }
}

} // namespace service
