#pragma once

#include <service/records/Files.h>

#include <functional>

namespace service {

class ContentStore;
class IncomingFile;
class ServiceError;
struct ContentDigest;

//! \brief The contents that one user may access. An MD5 or an id alone does not tell whether a content exists, and contents that are
//! missing on the disk are never reported as existing.
class Contents
{
public:
    Contents(Database &database, ContentStore &store, Access &access);

    //! Returns the content with that MD5 if it is complete and the user may download it.
    std::optional<StoredFile> findByMd5(const QString &md5);

    //! Returns the content that is to be attached to a document. \throws ServiceError: Invalid if the user may not download it or the id
    //! is unknown; Gone if it is no longer on the disk
    StoredFile requireForDocument(const QString &id);

    //! Returns the content that is to be downloaded. \throws ServiceError: NotFound, Gone
    StoredFile requireForDownload(const QString &id);

    //! \throws ServiceError (Gone) if the content is no longer on the disk
    void requireHeld(const StoredFile &file);

    //! Stores a file, and the user as one who has uploaded it.
    //! \throws ServiceError (Conflict) if another file has the same MD5
    StoredFile keep(IncomingFile &file, const QString &name);

    //! The same for a file that \a giveName makes a content if that is necessary. Requires the ContentLock.
    //! \param fresh the row for a new content
    //! \param alsoChange called in the transaction that adds the row
    StoredFile admit(const ContentDigest &digest, StoredFile fresh,
                     const std::function<void()> &giveName,
                     const std::function<void()> &alsoChange);

private:
    StoredFile require(const QString &id, const ServiceError &refusal);
    void requireSame(const StoredFile &known, const ContentDigest &digest);

    Database &m_database;
    ContentStore &m_store;
    Access &m_access;
    Files m_files;
};

} // namespace service
