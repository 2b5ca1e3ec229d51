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

//! \brief One content on its way to a local file.
struct DownloadTask
{
    VellDocument document; //!< or the version of it that is wanted
    bool isVersion = false;
    bool isStream = false; //!< the target is a device or a pipe, which is written to as it is
    QString localPath;
};

//! \brief Which contents are to go into which local files, settled before the first byte is fetched.
//!
//! A local file that has the content already is left as it is, so that the same command goes on where an earlier run has stopped.
class DownloadPlan
{
public:
    //! \throws Failure
    explicit DownloadPlan(Context &context);

    //! Adds the file, or with --recursive the folder with everything below, for the local folder \a target; a single
    //! source may also take \a target as its name. Makes local folders. \throws Failure
    //! \param isVersion \a document is a version from a history
    //! \param isOwn the folder \a target has been made for \a document by an earlier run of this command
    void add(const VellDocument &document, const QString &target, int sourceCount, bool isVersion,
             bool isOwn = false);

    //! Decides about the files that have been added. \throws Failure
    void settle();

    const QList<DownloadTask> &tasks() const { return m_tasks; }
    qint64 totalBytes() const { return m_totalBytes; }
    const QStringList &skipped() const { return m_skipped; } //!< local paths
    const QStringList &unchanged() const
    {
        return m_unchanged;
    } //!< of files that are there already

    //! Local paths that cannot be written, each with the reason.
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
