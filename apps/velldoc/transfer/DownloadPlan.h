#pragma once

#include <document_model/VellDocument.h>

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

namespace velldoc {

class Context;

struct DownloadTask
{
    VellDocument document;
    qint64 sizeBytes = -1; //!< -1 when the record does not tell
    QString localPath;
};

//! \brief Which contents are to go into which local files, settled before the first byte is fetched.
class DownloadPlan
{
public:
    explicit DownloadPlan(Context &context);

    //! Adds the file, or with --recursive the folder with everything below, for the local folder \a target; a single
    //! source may also take \a target as its name. Makes local folders. \throws Failure
    void add(const VellDocument &document, const QString &target, int sourceCount,
             qint64 sizeBytes);

    const QList<DownloadTask> &tasks() const { return m_tasks; }
    qint64 totalBytes() const { return m_totalBytes; }
    const QStringList &skipped() const { return m_skipped; } //!< local paths

private:
    void addFolder(const VellDocument &folder, const QString &path);
    void addFile(const VellDocument &document, const QString &path, qint64 sizeBytes);

    Context &m_context;
    QList<DownloadTask> m_tasks;
    QSet<QString> m_planned;
    qint64 m_totalBytes = 0;
    QStringList m_skipped;
};

} // namespace velldoc
