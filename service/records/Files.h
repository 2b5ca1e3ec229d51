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
    QString sha256; //!< empty for what an earlier version stored, until it is compared
    qint64 size = 0;
    QString name;
};

//! \brief The table of stored contents. It says what was stored; only the ContentStore knows what is there.
//! Changes belong inside a Transaction of the caller.
class Files
{
public:
    explicit Files(Database &database);

    std::optional<StoredFile> find(const QString &id);
    std::optional<StoredFile> findByMd5(const QString &md5);

    //! The row of that content, made when it is missing, with the user among those who uploaded it. A new
    //! row has the id of \a file, or a fresh one when that is empty.
    StoredFile insert(StoredFile file, const QString &userId);

    //! Returns true if the user has uploaded the content, or may download a document that has or had it.
    bool mayDownload(const QString &fileId, Access &access);

    //! Notes that somebody was told that the content is there, so that a sweep spares it. A full disk is no
    //! failure: then nobody can use what was promised either. Needs no Transaction.
    void notePromise(const StoredFile &file);

    //! Notes the download on the documents that hold the content. The same holds: a download must not fail for it.
    void noteDownload(const QString &fileId, const QString &userId);

private:
    Database &m_database;
};

} // namespace service
