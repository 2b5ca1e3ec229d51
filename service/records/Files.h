#pragma once

#include <QString>

#include <optional>

namespace service {

class Access;
class Database;

//! A stored content.
struct StoredFile
{
    QString id;
    QString md5;
    qint64 size = 0;
    QString name;
};

//! \brief The table of stored contents. Changes belong inside a Transaction of the caller.
class Files
{
public:
    explicit Files(Database &database);

    std::optional<StoredFile> find(const QString &id);
    std::optional<StoredFile> findByMd5(const QString &md5);

    //! The row of that content, made when it is missing, with the user among those who uploaded it. A new
    //! row has the id of \a file, or a fresh one when that is empty.
    StoredFile insert(StoredFile file, const QString &userId);

    //! Whether the user has uploaded the content, or may download a document that holds it.
    bool mayDownload(const QString &fileId, Access &access);

    //! Notes the download on the documents that hold the content.
    void noteDownload(const QString &fileId, const QString &userId);

private:
    Database &m_database;
};

} // namespace service
