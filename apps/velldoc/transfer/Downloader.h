#pragma once

#include <velldoc/output/Progress.h>

#include <QString>
#include <QtGlobal>

class QIODevice;

namespace velldoc {

class Context;
class Session;

//! \brief Fetches contents, each into a file that appears under its name only when it is complete.
class Downloader
{
public:
    struct Content
    {
        QString fileId;
        qint64 sizeBytes = -1; //!< as the service's record says; -1 when that is not known
        QString name; //!< for the progress
    };

    //! \param totalBytes of all that will be fetched
    Downloader(Context &context, int fileCount, qint64 totalBytes);

    //! Writes beside \a path first and renames once the content is complete; a file that is there is replaced.
    //! A connection that is lost on the way is tried again, a bounded number of times. \throws Failure
    void fetch(const Content &content, const QString &path);

    //! Writes to \a device, which must be open. \throws Failure
    void fetch(const Content &content, QIODevice &device);

    qint64 doneBytes() const { return m_doneBytes; }

private:
    void fetchOnce(const Content &content, const QString &path);
    void finishOne(qint64 bytes);

    Session &m_session;
    const int m_fileCount;
    int m_doneCount = 0;
    qint64 m_doneBytes = 0;
    Progress m_progress;
};

} // namespace velldoc
