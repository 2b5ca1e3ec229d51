#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace service {

class ContentStore;
class Database;
struct StoredFile;

//! A content that is not what the records say.
struct DamagedContent
{
    QString md5;
    QString reason; //!< half a sentence
    QStringList documents; //!< "PROJECT/Folder/name (ID)", those that have or had it
};

//! \brief Reads every content and compares it with what the records say.
//!
//! What is damaged is moved aside, so that nobody gets wrong bytes and the next upload of the same file mends it. The
//! SHA-256 of what an earlier version stored is added. Works while a service is running on the data folder.
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
