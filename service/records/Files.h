#pragma once

#include <QString>

#include <optional>

namespace service {

class Access;
class Database;
struct ContentDigest;

//! A stored content.
struct StoredFile
{
    QString id;
    QString md5;
    QString sha256; //!< empty for contents of an earlier version until they are checked
    qint64 size = 0;
    QString name;
};

//! \brief The table of contents that were stored; the ContentStore tells whether they are still there. Changes require a Transaction.
class Files
{
public:
    explicit Files(Database &database);

    std::optional<StoredFile> find(const QString &id);
    std::optional<StoredFile> findByMd5(const QString &md5);

    //! Returns the row of that content, which is added if it is missing, and stores the user as one who has uploaded it. A new row has
    //! the id of \a file, or a new one if that is empty.
    StoredFile insert(StoredFile file, const QString &userId);

    //! Returns true if the user has uploaded the content or may download a document that has or had it.
    bool mayDownload(const QString &fileId, Access &access);

    //! Stores that a client was told that the content exists, so that a sweep keeps it. A full disk is not an error: the client cannot
    //! use the content then. Requires no Transaction.
    //! \return false if a sweep has removed the content meanwhile
    bool notePromise(const StoredFile &file);

    //! Stores the time of the download with the documents that have the content. A failure is ignored, like that of the function above.
    void noteDownload(const QString &fileId, const QString &userId);

private:
    Database &m_database;
};

} // namespace service
