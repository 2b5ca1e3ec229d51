#pragma once

#include <QString>

namespace service {

//! \brief Where everything is in a data folder.
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
    QString temporary() const { return file("tmp"); } //!< what is arriving; emptied at start
    QString aside() const { return file("aside"); } //!< what was found damaged or unknown
    QString generation() const { return file("content/.generation"); } //!< see Generation
    QString lock() const { return file("lock"); } //!< see FolderLock
    QString contentLocks() const { return file("content.locks"); } //!< see ContentLock
    //! A copy of the database from before the migration to \a schema.
    QString recordsBefore(int schema) const { return file("records.before-%1.sqlite").arg(schema); }

    //! Returns true if there is a database with something in it.
    bool hasRecords() const;

    //! Makes the folder with what belongs in it when it is missing. Nobody but the owner may read it, whatever
    //! the umask; what an earlier version left readable is closed. \throws StorageError
    void make() const;

private:
    QString file(const char *name) const { return m_path + QLatin1Char('/') + QLatin1String(name); }

    QString m_path;
};

} // namespace service
