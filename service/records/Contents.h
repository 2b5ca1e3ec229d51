#pragma once

#include <service/records/Files.h>

#include <functional>

namespace service {

class ContentStore;
class IncomingFile;
class ServiceError;
struct ContentDigest;

//! \brief The stored contents as one user may see them: nobody learns from an MD5 or an id alone that a content is
//! there, and nobody is told of one that is not on the disk.
class Contents
{
public:
    Contents(Database &database, ContentStore &store, Access &access);

    //! The content with that MD5, when it is whole and the user may download it.
    std::optional<StoredFile> findByMd5(const QString &md5);

    //! The content that the user wants to attach to a document. \throws ServiceError: Invalid for one that the user
    //! may not download, the same as for an unknown id; Gone for one that is no longer on the disk
    StoredFile requireForDocument(const QString &id);

    //! The content that the user wants to read. \throws ServiceError: NotFound, Gone
    StoredFile requireForDownload(const QString &id);

    //! \throws ServiceError (Gone) for a content that is no longer on the disk
    void requireHeld(const StoredFile &file);

    //! Stores what has arrived; the user counts as one who uploaded it.
    //! \throws ServiceError (Conflict) for a file that has the MD5 of another one
    StoredFile keep(IncomingFile &file, const QString &name);

    //! The same for bytes that \a giveName will name as content when that is needed. Under the ContentLock.
    //! \param fresh the row for a content that is new
    StoredFile admit(const ContentDigest &digest, StoredFile fresh,
                     const std::function<void()> &giveName);

private:
    StoredFile require(const QString &id, const ServiceError &refusal);
    void requireSame(const StoredFile &known, const ContentDigest &digest);

    Database &m_database;
    ContentStore &m_store;
    Access &m_access;
    Files m_files;
};

} // namespace service
