#include "LargeFolder.h"

#include <service/records/Documents.h>
#include <service/records/Files.h>
#include <service/records/Projects.h>
#include <service/storage/DataFolder.h>
#include <service/storage/Database.h>
#include <service/storage/Statement.h>

#include <QDir>

void storeEntries(const QString &dataDir, int entries, const QString &folder)
{
    using namespace service;
    QDir().mkpath(dataDir);
    const DataFolder data(dataDir);
    Database database(data);
    database.open();
    Transaction transaction(database);
    const QString project = QStringLiteral("p1");
    Projects(database).ensure(project);
    const QString user = QStringLiteral("local");
    Documents documents(database, user);
    const StoredFile file =
        Files(database).insert({QString(), QStringLiteral("md5"), QString(), 1, {}}, user);
    QString parentId;
    if (!folder.isEmpty()) {
        Document entry;
        entry.projectId = project;
        entry.type = QStringLiteral("dir");
        entry.name = folder;
        documents.insert(entry);
        parentId = entry.id;
    }
    for (int i = 0; i < entries; ++i) {
        Document entry;
        entry.projectId = project;
        entry.parentId = parentId;
        entry.type = i % 10 == 0 ? QStringLiteral("dir") : QStringLiteral("file");
        entry.fileId = i % 10 == 0 ? QString() : file.id;
        entry.size =
            i % 10 == 0 ? 0 : i * qint64(7919) % 1'000'003; // not in the order of the names
        entry.name = QStringLiteral("drawing %1.dwg").arg(i, 6, 10, QLatin1Char('0'));
        documents.insert(entry);
    }
    transaction.commit();
}
