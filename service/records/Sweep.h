#pragma once

#include <QString>
#include <QStringList>

namespace service {

class ContentStore;
class Database;

//! What a sweep has removed, or would remove.
struct SweepResult
{
    int abandonedUploads = 0;
    int unusedContents = 0;
    int strayFiles = 0; //!< moved aside
    qint64 bytes = 0;
};

//! \brief Removes what nobody needs: uploads by chunks that stopped long ago, and contents that no document and no
//! version holds and that nobody was told of lately. Files that no record knows are not deleted but moved aside: it
//! may be the records that are wrong.
//!
//! Works while a service is running on the data folder.
class Sweep
{
public:
    enum class Mode { Remove, DryRun };

    Sweep(Database &database, ContentStore &store);

    //! \param olderThanMs what is younger stays: a client may be about to use it
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
    qint64 m_before = 0;
    Mode m_mode = Mode::Remove;
    SweepResult m_result;
};

} // namespace service
