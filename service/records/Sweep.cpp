#include <service/records/Sweep.h>

#include <service/records/Times.h>
#include <service/storage/ContentLock.h>
#include <service/storage/ContentStore.h>
#include <service/storage/Statement.h>

#include <QDateTime>
#include <QDirIterator>
#include <QFileInfo>

namespace service {

namespace {

QString unusedFile()
{
    return QStringLiteral("promised_at < ? "
                          "AND NOT EXISTS (SELECT 1 FROM document WHERE file_id = file.id) "
                          "AND NOT EXISTS (SELECT 1 FROM version WHERE file_id = file.id)");
}

struct Row
{
    QString id;
    QString md5;
    QString part;
};

//! Reads all rows at once, so that the statement has ended when the first one is deleted.
QList<Row> rows(Database &database, const QString &sql, qint64 before)
{
    QList<Row> result;
    Statement row(database, sql, {before});
    while (row.next())
        result.append({row.text(0), row.text(1), row.text(2)});
    return result;
}

} // namespace

Sweep::Sweep(Database &database, ContentStore &store) : m_database(database), m_store(store) {}

SweepResult Sweep::run(qint64 olderThanMs, Mode mode)
{
    m_before = m_database.nowMs() - olderThanMs;
    m_filesBefore = m_store.fileClockMs() - olderThanMs;
    m_mode = mode;
    m_result = {};
    sweepUploads();
    sweepContents();
    sweepStrayParts();
    sweepStrayContents();
    return m_result;
}

void Sweep::sweepUploads()
{
    const QList<Row> uploads =
        rows(m_database,
             QStringLiteral("SELECT id, md5, part FROM large_file WHERE updated_at < ?"), m_before);
    for (const Row &upload : uploads) {
        const ContentLock lock(m_store.folder(), upload.md5);
        const qint64 size = QFileInfo(m_store.partPath(upload.part)).size();
        if (m_mode == Mode::Remove) {
            Transaction transaction(m_database);
            if (execute(m_database,
                        QStringLiteral("DELETE FROM large_file WHERE id = ? AND updated_at < ?"),
                        {upload.id, m_before})
                == 0)
                continue; // the upload was continued meanwhile
            transaction.commit();
            m_store.dropPart(upload.part);
        }
        ++m_result.abandonedUploads;
        m_result.bytes += size;
    }
}

void Sweep::sweepContents()
{
    const QList<Row> files = rows(
        m_database, QStringLiteral("SELECT id, md5, '' FROM file WHERE ") + unusedFile(), m_before);
    for (const Row &file : files) {
        const ContentLock lock(m_store.folder(), file.md5);
        const qint64 size = QFileInfo(m_store.contentPath(file.md5)).size();
        if (m_mode == Mode::Remove) {
            Transaction transaction(m_database);
            if (execute(m_database,
                        QStringLiteral("DELETE FROM file WHERE id = ? AND ") + unusedFile(),
                        {file.id, m_before})
                == 0)
                continue; // it is used meanwhile
            transaction.commit();
            // After the row: a file without a row is found by the next sweep, but a row without its file would be a
            // loss.
            m_store.removeContent(file.md5);
        }
        ++m_result.unusedContents;
        m_result.bytes += size;
    }
}

void Sweep::sweepStrayParts()
{
    const QStringList parts = oldFiles(m_store.folder().parts());
    for (const QString &part : parts) {
        if (!hasRow(QStringLiteral("SELECT 1 FROM large_file WHERE part = ?"),
                    QFileInfo(part).fileName()))
            moveAside(part);
    }
}

void Sweep::sweepStrayContents()
{
    const QStringList contents = oldFiles(m_store.folder().contents());
    for (const QString &content : contents) {
        const QString name = QFileInfo(content).fileName();
        const ContentLock lock(m_store.folder(), name);
        const bool isKnown = content == m_store.contentPath(name)
            && hasRow(QStringLiteral("SELECT 1 FROM file WHERE md5 = ?"), name);
        if (!isKnown)
            moveAside(content);
    }
}

QStringList Sweep::oldFiles(const QString &folder) const
{
    QStringList found;
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        if (files.fileInfo().lastModified().toMSecsSinceEpoch() < m_filesBefore)
            found.append(files.filePath());
    }
    return found;
}

bool Sweep::hasRow(const QString &sql, const QString &value)
{
    return Statement(m_database, sql, {value}).next();
}

void Sweep::moveAside(const QString &path)
{
    const QFileInfo stray(path);
    if (!stray.exists())
        return; // an upload has added it meanwhile
    ++m_result.strayFiles;
    m_result.bytes += stray.size();
    if (m_mode == Mode::Remove)
        m_store.moveAside(path);
}

} // namespace service
