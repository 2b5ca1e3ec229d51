#pragma once

#include <document_model/VellDocument.h>
#include <velldoc/transfer/LocalFilter.h>

#include <QHash>
#include <QList>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace velldoc {

class Context;

//! \brief The download of one content.
struct DownloadTask
{
    VellDocument document; //!< or a version of it
    bool isVersion = false;
    bool isStream = false; //!< the target is a device or a pipe, which is written directly
    QString localPath;
};

//! \brief The downloads of a command, decided before the first byte is received.
//!
//! A local file that already has the content is skipped, so that the same command continues where an earlier run has stopped.
class DownloadPlan
{
public:
    //! \throws Failure
    explicit DownloadPlan(Context &context);

    //! Adds the file, or with --recursive the folder with all its contents, for the local folder \a target; for a single
    //! source, \a target may also be the new path. Creates local folders. \throws Failure
    //! \param isVersion true if \a document is a version from a history
    //! \param isOwn true if an earlier run of this command has created the folder \a target for \a document
    void add(const VellDocument &document, const QString &target, int sourceCount, bool isVersion,
             bool isOwn = false);

    //! Decides the conflicts of the added files. \throws Failure
    void settle();

    const QList<DownloadTask> &tasks() const { return m_tasks; }
    qint64 totalBytes() const { return m_totalBytes; }
    const QStringList &skipped() const { return m_skipped; } //!< local paths
    const QStringList &unchanged() const
    {
        return m_unchanged;
    } //!< local paths of files that already have the content

    //! Returns the local paths that cannot be written, each with the reason.
    const QList<QPair<QString, QString>> &unwritable() const { return m_unwritable; }

private:
    void addFolder(const VellDocument &folder, const QString &path, const QString &inRoot);
    void addFile(const VellDocument &document, const QString &path, bool isVersion);
    QHash<QString, QString> readContents();
    bool isToFetch(const DownloadTask &task);
    void refuse(const QString &path, const QString &reason);

    Context &m_context;
    const FilterOptions m_filterOptions;
    std::optional<VellPathFilter> m_filter;
    QSet<QString> m_planned;
    QList<DownloadTask> m_found;
    QList<DownloadTask> m_tasks;
    qint64 m_totalBytes = 0;
    QStringList m_skipped;
    QStringList m_unchanged;
    QList<QPair<QString, QString>> m_unwritable;
};

} // namespace velldoc
