#include <service/storage/ContentStore.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace service {

namespace {

constexpr qint64 CopyBlock = Q_INT64_C(256) * 1024;

void makeFolder(const QString &path)
{
    if (QDir().exists(path))
        return;
    // Another upload may have made it meanwhile.
    if (!QDir().mkdir(path) && !QDir().exists(path))
        throw StorageError(QStringLiteral("making the folder %1").arg(path), errno);
    syncFolder(QFileInfo(path).path());
}

void copy(const IncomingFile &from, qint64 offset, RawFile &to, Md5 &hash)
{
    std::vector<char> block(static_cast<size_t>(CopyBlock));
    for (qint64 done = 0; done < from.size();) {
        const qint64 count = from.readAt(done, block.data(), CopyBlock);
        if (count == 0)
            throw StorageError(QStringLiteral("reading a chunk"), EIO);
        to.writeAt(offset + done, block.data(), count);
        hash.add(block.data(), count);
        done += count;
    }
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
    m_store.giveRoom(m_size);
}

void IncomingFile::write(const char *data, qint64 length)
{
    m_store.takeRoom(length);
    m_size += length;
    m_file.writeAt(m_size - length, data, length);
    m_md5.add(data, length);
}

qint64 IncomingFile::readAt(qint64 offset, char *data, qint64 length) const
{
    return m_file.readAt(offset, data, length);
}

ContentStore::ContentStore(const QString &folder, qint64 quotaBytes)
    : m_folder(folder), m_quotaBytes(quotaBytes)
{}

void ContentStore::open()
{
    for (const QLatin1String name :
         {QLatin1String("content"), QLatin1String("parts"), QLatin1String("tmp")})
        makeFolder(m_folder + QLatin1Char('/') + name);
    QDirIterator leftOver(m_folder + QStringLiteral("/tmp"), QDir::Files);
    while (leftOver.hasNext())
        QFile::remove(leftOver.next());
    if (m_quotaBytes == 0)
        return;
    QDirIterator files(m_folder, QDir::Files, QDirIterator::Subdirectories);
    qint64 used = 0;
    while (files.hasNext()) {
        const QString path = files.next();
        if (QFileInfo(path).path() != m_folder) // the database does not count
            used += files.fileInfo().size();
    }
    m_usedBytes = used;
}

std::unique_ptr<IncomingFile> ContentStore::newFile()
{
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces);
    return std::make_unique<IncomingFile>(*this, m_folder + QStringLiteral("/tmp/") + name);
}

QByteArray ContentStore::keep(IncomingFile &file)
{
    QByteArray digest = file.m_md5.result();
    const QString md5 = QString::fromLatin1(digest);
    const QString path = contentPath(md5);
    if (!contains(md5)) {
        file.m_file.sync();
        makeContentFolder(md5);
        renameFile(file.m_path, path);
        file.m_isKept = true;
    }
    // Also where it was there already: another upload may have named it this very moment.
    syncFolder(QFileInfo(path).path());
    return digest;
}

QString ContentStore::contentPath(const QString &md5) const
{
    return QStringLiteral("%1/content/%2/%3/%4").arg(m_folder, md5.left(2), md5.mid(2, 2), md5);
}

bool ContentStore::contains(const QString &md5) const
{
    return QFile::exists(contentPath(md5));
}

QString ContentStore::partPath(const QString &md5) const
{
    return QStringLiteral("%1/parts/%2").arg(m_folder, md5);
}

void ContentStore::writePart(const QString &md5, qint64 offset, const IncomingFile &chunk,
                             Md5 &hash)
{
    const QString path = partPath(md5);
    const bool isNew = !QFile::exists(path);
    RawFile part(path, RawFile::Mode::ReadWrite);
    const qint64 before = part.size();
    const qint64 growth = std::max<qint64>(0, offset + chunk.size() - before);
    takeRoom(growth);
    try {
        copy(chunk, offset, part, hash);
    } catch (const StorageError &) {
        giveRoom(growth - (part.size() - before));
        throw;
    }
    part.sync();
    if (isNew)
        syncFolder(QFileInfo(path).path());
}

void ContentStore::keepPart(const QString &md5)
{
    makeContentFolder(md5);
    const QString path = contentPath(md5);
    renameFile(partPath(md5), path);
    syncFolder(QFileInfo(path).path());
    syncFolder(m_folder + QStringLiteral("/parts"));
}

void ContentStore::dropPart(const QString &md5)
{
    const QFileInfo part(partPath(md5));
    const qint64 size = part.size();
    if (QFile::remove(part.filePath()))
        giveRoom(size);
}

void ContentStore::takeRoom(qint64 bytes)
{
    const qint64 used = m_usedBytes += bytes;
    if (m_quotaBytes > 0 && used > m_quotaBytes) {
        m_usedBytes -= bytes;
        throw StorageError(QStringLiteral("writing above the quota"), ENOSPC);
    }
}

void ContentStore::makeContentFolder(const QString &md5)
{
    const QString first = QStringLiteral("%1/content/%2").arg(m_folder, md5.left(2));
    makeFolder(first);
    makeFolder(first + QLatin1Char('/') + md5.mid(2, 2));
}

} // namespace service
