#pragma once

#include <QString>

namespace service {

//! \brief The paths in a data folder.
class DataFolder
{
public:
    explicit DataFolder(const QString &path) : m_path(path) {}

    QString path() const { return m_path; }
    QString records() const { return file("records.sqlite"); } //!< the database
    QString contents() const
    {
        return file("content");
    } //!< files named by their MD5, in two levels
    QString parts() const { return file("parts"); } //!< uploads by chunks
    QString temporary() const { return file("tmp"); } //!< see TemporaryFolder
    QString aside() const { return file("aside"); } //!< damaged and unknown files
    QString generation() const { return file("content/.generation"); } //!< see Generation
    QString lock() const { return file("lock"); } //!< see FolderLock
    QString sweeps() const { return file("sweeps.json"); } //!< see SweepLog
    QString contentLocks() const { return file("content.locks"); } //!< see ContentLock
    QString temporaryLocks() const { return file("tmp.locks"); } //!< see TemporaryFolder
    QString movedRecords() const
    {
        return file("records.moved.sqlite");
    } //!< after "vell-service copy"
    //! Returns the path of the copy of the database before the migration to \a schema.
    QString recordsBefore(int schema) const { return file("records.before-%1.sqlite").arg(schema); }

    //! Returns true if there is a database that is not empty.
    bool hasRecords() const;

    //! Creates the folder and its subfolders if they are missing. They are readable by the owner only, whatever the umask; the permissions
    //! that an earlier version has set are corrected. \throws StorageError
    void make() const;

private:
    QString file(const char *name) const { return m_path + QLatin1Char('/') + QLatin1String(name); }

    QString m_path;
};

} // namespace service
