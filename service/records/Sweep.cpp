#include <service/records/Sweep.h>

#include <service/records/Times.h>
#include <service/storage/ContentStore.h>
#include <service/storage/Statement.h>

#include <QDateTime>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

namespace service {

Sweep::Sweep(Database &database, ContentStore &contents, const QString &folder)
    : m_database(database), m_contents(contents), m_folder(folder)
{}

SweepResult Sweep::run(qint64 olderThanMs, bool isDryRun)
{
    m_before = nowMs() - olderThanMs;
    m_isDryRun = isDryRun;
    m_result = {};
    sweepUploads();
    sweepContents();
    sweepStrays(QStringLiteral("parts"), column(QStringLiteral("SELECT md5 FROM large_file")));
    sweepStrays(QStringLiteral("content"), column(QStringLiteral("SELECT md5 FROM file")));
    sweepStrays(QStringLiteral("tmp"), {});
    return m_result;
}

void Sweep::sweepUploads()
{
    Transaction transaction(m_database);
    Statement row(m_database, QStringLiteral("SELECT id, md5 FROM large_file WHERE updated_at < ?"),
                  {m_before});
    QStringList parts;
    while (row.next()) {
        ++m_result.abandonedUploads;
        parts.append(m_contents.partPath(row.text(1)));
        if (!m_isDryRun)
            execute(m_database, QStringLiteral("DELETE FROM large_file WHERE id = ?"),
                    {row.text(0)});
    }
    row.finish();
    transaction.commit();
    for (const QString &part : qAsConst(parts))
        removeFile(part);
}

void Sweep::sweepContents()
{
    Transaction transaction(m_database);
    Statement row(m_database,
                  QStringLiteral("SELECT f.id, f.md5 FROM file f WHERE f.created_at < ? "
                                 "AND NOT EXISTS (SELECT 1 FROM document WHERE file_id = f.id) "
                                 "AND NOT EXISTS (SELECT 1 FROM version WHERE file_id = f.id)"),
                  {m_before});
    QStringList contents;
    while (row.next()) {
        ++m_result.unusedContents;
        contents.append(m_contents.contentPath(row.text(1)));
        if (!m_isDryRun)
            execute(m_database, QStringLiteral("DELETE FROM file WHERE id = ?"), {row.text(0)});
    }
    row.finish();
    transaction.commit();
    // After the rows: a file without a row is a stray that the next sweep finds, a row without its file a
    // loss.
    for (const QString &content : qAsConst(contents))
        removeFile(content);
}

void Sweep::sweepStrays(const QString &subfolder, const QStringList &known)
{
    const QSet<QString> names(known.begin(), known.end());
    QStringList strays;
    QDirIterator files(m_folder + QLatin1Char('/') + subfolder, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        if (!names.contains(files.fileName())
            && files.fileInfo().lastModified().toMSecsSinceEpoch() < m_before)
            strays.append(files.filePath());
    }
    for (const QString &stray : qAsConst(strays)) {
        ++m_result.strayFiles;
        removeFile(stray);
    }
}

void Sweep::removeFile(const QString &path)
{
    m_result.bytes += QFileInfo(path).size();
    if (!m_isDryRun)
        QFile::remove(path);
}

QStringList Sweep::column(const QString &sql)
{
    QStringList values;
    Statement row(m_database, sql);
    while (row.next())
        values.append(row.text(0));
    return values;
}

} // namespace service
