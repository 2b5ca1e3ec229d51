#include <service/storage/ContentStore.h>

#include <QDateTime>
#include <QDir>
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

constexpr std::chrono::milliseconds StoredBytesAge{500};

//! -1 if the file is not there.
qint64 openedSize(const QString &path)
{
    try {
        return RawFile(path, RawFile::Mode::ReadOnly).size();
    } catch (const StorageError &) {
        return -1;
    }
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
    if (m_isKept) {
        m_store.keptBytes(m_size);
        return;
    }
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

void ContentStore::open()
{
    prepare(false);
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

void ContentStore::openShared(std::function<qint64()> storedBytes)
{
    m_askStoredBytes = std::move(storedBytes);
    prepare(true);
}

void ContentStore::prepare(bool isShared)
{
    m_temporary.reset();
    m_temporary = std::make_unique<TemporaryFolder>(m_folder);
    // Files of an earlier version, which had no folder for each process.
    const QDateTime yesterday = QDateTime::currentDateTimeUtc().addDays(-1);
    QDirIterator leftOver(m_folder.temporary(), QDir::Files);
    while (leftOver.hasNext()) {
        leftOver.next();
        if (!isShared || leftOver.fileInfo().lastModified() < yesterday)
            QFile::remove(leftOver.filePath());
    }
}

void ContentStore::close()
{
    m_temporary.reset();
}

std::unique_ptr<IncomingFile> ContentStore::newFile()
{
    return std::make_unique<IncomingFile>(*this, temporaryPath() + QLatin1Char('/') + uniqueName());
}

QString ContentStore::contentPath(const QString &md5) const
{
    return QStringLiteral("%1/%2/%3/%4").arg(m_folder.contents(), md5.left(2), md5.mid(2, 2), md5);
}

bool ContentStore::holds(const QString &md5, qint64 size) const
{
    return sizeOf(contentPath(md5)) == size;
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
    const QString copy = temporaryPath() + QLatin1Char('/') + uniqueName();
    copyFile(path, copy);
    nameContent(copy, md5);
}

void ContentStore::nameContent(const QString &from, const QString &md5)
{
    const QString path = contentPath(md5);
    const Folder inner{folderOf(path), md5.left(4).toUInt(nullptr, 16)};
    const Folder outer{folderOf(inner.path), InnerFolders + md5.left(2).toUInt(nullptr, 16)};
    const qint64 replaced = QFileInfo(path).size();
    const bool isOuterToWrite = makeFolder(outer);
    const bool isInnerToWrite = makeFolder(inner);
    renameFile(from, path);
    forgetBytes(replaced);
    syncFolder(inner.path);
    if (isInnerToWrite)
        writeFolder(inner);
    if (isOuterToWrite)
        writeFolder(outer);
}

bool ContentStore::makeFolder(const Folder &folder)
{
    const bool isNew = makePrivateFolder(folder.path);
    const std::lock_guard<std::mutex> lock(m_foldersLock);
    return isNew || !m_writtenFolders.test(folder.number);
}

void ContentStore::writeFolder(const Folder &folder)
{
    syncFolder(folderOf(folder.path));
    const std::lock_guard<std::mutex> lock(m_foldersLock);
    m_writtenFolders.set(folder.number);
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
    keptBytes(growth);
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
        forgetBytes(size);
}

qint64 ContentStore::sizeOf(const QString &path) const
{
    // Opening asks a network file system for what is true now.
    qint64 size = openedSize(path);
    if (size < 0 && m_askStoredBytes) {
        // It may remember for seconds that a file was not there; reading the folders ends that.
        for (QString folder = folderOf(path); folder.size() > m_folder.path().size();
             folder = folderOf(folder))
            QDir(folder).entryList();
        size = openedSize(path);
    }
    return size;
}

qint64 ContentStore::fileClockMs() const
{
    const QString probe = m_folder.aside() + QStringLiteral("/.clock-") + uniqueName();
    try {
        const RawFile file(probe, RawFile::Mode::CreateNew);
    } catch (const StorageError &) {
        return QDateTime::currentMSecsSinceEpoch(); // a full disk must not prevent a sweep
    }
    const qint64 now = QFileInfo(probe).lastModified().toMSecsSinceEpoch();
    QFile::remove(probe);
    return now;
}

void ContentStore::requireWithinQuota(qint64 storedBytes) const
{
    if (m_quotaBytes > 0 && storedBytes > m_quotaBytes)
        throw StorageError(QStringLiteral("writing above the quota"), ENOSPC);
}

void ContentStore::forgetBytes(qint64 bytes)
{
    if (!m_askStoredBytes)
        releaseBytes(bytes);
}

void ContentStore::keptBytes(qint64 bytes)
{
    if (m_askStoredBytes)
        releaseBytes(bytes);
}

//! Refuses early what the database would refuse in the end.
qint64 ContentStore::storedBytes()
{
    if (!m_askStoredBytes)
        return 0;
    const auto now = std::chrono::steady_clock::now();
    {
        const std::lock_guard<std::mutex> lock(m_storedLock);
        if (m_storedBytes >= 0 && now - m_storedAt < StoredBytesAge)
            return m_storedBytes;
    }
    const qint64 stored = m_askStoredBytes();
    const std::lock_guard<std::mutex> lock(m_storedLock);
    m_storedAt = now;
    return m_storedBytes = stored;
}

void ContentStore::reserveBytes(qint64 bytes)
{
    const qint64 used = m_usedBytes += bytes;
    if (m_quotaBytes == 0)
        return;
    try {
        requireWithinQuota(used + storedBytes());
    } catch (...) {
        m_usedBytes -= bytes;
        throw;
    }
}

} // namespace service
