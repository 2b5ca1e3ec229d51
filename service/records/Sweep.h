#pragma once

#include <QString>
#include <QStringList>

namespace service {

class ContentStore;
class Database;

//! The number of objects that a sweep has removed, or would remove.
struct SweepResult
{
    int abandonedUploads = 0;
    int unusedContents = 0;
    int strayFiles = 0; //!< moved aside
    qint64 bytes = 0;
};

//! \brief Removes abandoned uploads by chunks, and contents that no document and no version has and that no client was told of
//! recently. Files that are not in the database are moved aside instead of being deleted, because the database may be wrong.
//!
//! May be used while a service is running on the data folder.
class Sweep
{
public:
    enum class Mode { Remove, DryRun };

    Sweep(Database &database, ContentStore &store);

    //! \param olderThanMs younger objects are kept, because a client may be about to use them
    SweepResult run(qint64 olderThanMs, Mode mode);

private:
    void sweepUploads();
    void sweepContents();
    void sweepStrayParts();
    void sweepStrayContents();
    QStringList oldFiles(const QString &folder) const;
    bool hasRow(const QString &sql, const QString &value);
    void moveAside(const QString &path);

    Database &m_database;
    ContentStore &m_store;
    qint64 m_before = 0; //!< by the clock of the database
    qint64 m_filesBefore = 0; //!< by that of the file system
    Mode m_mode = Mode::Remove;
    SweepResult m_result;
};

} // namespace service
