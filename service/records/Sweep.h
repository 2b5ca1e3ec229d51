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
    int strayFiles = 0;
    qint64 bytes = 0;
};

//! \brief Removes what nobody needs: uploads by chunks that stopped long ago, contents that no document and no
//! version holds, files that no record knows. Only on a data folder that no service is using.
class Sweep
{
public:
    Sweep(Database &database, ContentStore &contents, const QString &folder);

    //! \param olderThanMs what is younger stays: a client may be about to use it
    SweepResult run(qint64 olderThanMs, bool isDryRun);

private:
    void sweepUploads();
    void sweepContents();
    void sweepStrays(const QString &subfolder, const QStringList &known);
    void removeFile(const QString &path);
    QStringList column(const QString &sql);

    Database &m_database;
    ContentStore &m_contents;
    const QString m_folder;
    qint64 m_before = 0;
    bool m_isDryRun = false;
    SweepResult m_result;
};

} // namespace service
