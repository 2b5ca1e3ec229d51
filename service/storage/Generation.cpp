#include <service/storage/Generation.h>

#include <service/storage/DataFolder.h>
#include <service/storage/FileSync.h>
#include <service/storage/Statement.h>

#include <QDirIterator>
#include <QFile>
#include <QUuid>

namespace service {

namespace {

struct Stamp
{
    QString store;
    qint64 number = 0;
};

Stamp ofDatabase(Database &database)
{
    Statement row(database, QStringLiteral("SELECT id, generation FROM store"));
    row.next();
    return {row.text(0), row.number(1)};
}

bool hasFiles(const DataFolder &folder)
{
    return QDirIterator(folder.contents(), QDir::Files, QDirIterator::Subdirectories).hasNext();
}

bool hasRows(Database &database)
{
    return Statement(database, QStringLiteral("SELECT 1 FROM file LIMIT 1")).next();
}

} // namespace

Generation::Generation(Database &database, const DataFolder &folder)
    : m_database(database), m_folder(folder)
{}

bool Generation::fits()
{
    QFile file(m_folder.generation());
    // Empty after a power failure.
    if (!file.open(QIODevice::ReadOnly) || file.size() == 0)
        return hasRows(m_database) || !hasFiles(m_folder);
    const QList<QByteArray> words = file.readAll().simplified().split(' ');
    const Stamp own = ofDatabase(m_database);
    return words.size() == 2 && own.store == QString::fromLatin1(words.at(0))
        && words.at(1).toLongLong() <= own.number;
}

void Generation::raise()
{
    // The database first: if it is ahead after a crash, that is harmless.
    execute(m_database, QStringLiteral("UPDATE store SET generation = generation + 1"));
    const Stamp own = ofDatabase(m_database);
    const QByteArray line = own.store.toLatin1() + ' ' + QByteArray::number(own.number) + '\n';
    // Services on a shared database may start at the same time.
    const QString fresh =
        m_folder.generation() + QUuid::createUuid().toString(QUuid::WithoutBraces);
    {
        RawFile file(fresh, RawFile::Mode::ReadWrite);
        file.truncate();
        file.writeAt(0, line.constData(), line.size());
    }
    // Not synced, so that the start does not wait for the disk: after a power failure the old number may be there.
    renameFile(fresh, m_folder.generation());
}

} // namespace service
