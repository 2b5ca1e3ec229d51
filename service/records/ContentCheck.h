#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace service {

class ContentStore;
class Database;
struct StoredFile;

//! A content that differs from its entry in the database.
struct DamagedContent
{
    QString md5;
    QString reason; //!< part of a sentence
    QStringList documents; //!< those that have or had the content, as "PROJECT/Folder/name (ID)"
};

//! \brief Reads every content and compares it with the database.
//!
//! Damaged contents are moved aside, so that they cannot be downloaded, and the next upload of the same file repairs them. The SHA-256
//! of contents that an earlier version has stored is added. May be used while a service is running on the data folder.
class ContentCheck
{
public:
    ContentCheck(Database &database, ContentStore &store);

    QList<DamagedContent> run();
    int checkedCount() const { return m_checkedCount; }

private:
    QString damageOf(const StoredFile &file);
    QStringList documentsWith(const QString &fileId);

    Database &m_database;
    ContentStore &m_store;
    int m_checkedCount = 0;
};

} // namespace service
