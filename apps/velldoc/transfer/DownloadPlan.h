#pragma once

#include <document_model/VellDocument.h>

#include <QList>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>

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
class DownloadPlan
{
public:
    explicit DownloadPlan(Context &context);

    //! Adds the file, or with --recursive the folder with everything below, for the local folder \a target; a single
    //! source may also take \a target as its name. Makes local folders. \throws Failure
    //! \param isVersion \a document is a version from a history
    void add(const VellDocument &document, const QString &target, int sourceCount, bool isVersion);

    const QList<DownloadTask> &tasks() const { return m_tasks; }
    qint64 totalBytes() const { return m_totalBytes; }
    const QStringList &skipped() const { return m_skipped; } //!< local paths

    //! Local paths that cannot be written, each with the reason.
    const QList<QPair<QString, QString>> &unwritable() const { return m_unwritable; }

private:
    void addFolder(const VellDocument &folder, const QString &path);
    void addFile(const VellDocument &document, const QString &path, bool isVersion);
    void refuse(const QString &path, const QString &reason);

    Context &m_context;
    QList<DownloadTask> m_tasks;
    QSet<QString> m_planned;
    qint64 m_totalBytes = 0;
    QStringList m_skipped;
    QList<QPair<QString, QString>> m_unwritable;
};

} // namespace velldoc
