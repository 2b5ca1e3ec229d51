#pragma once

#include <document_model/VellDocument.h>
#include <velldoc/documents/RemotePath.h>
#include <velldoc/transfer/ConflictPolicy.h>
#include <velldoc/transfer/LocalFilter.h>

#include <QHash>
#include <QList>
#include <QPair>
#include <QSet>
#include <QStringList>

#include <optional>

class QFileInfo;

namespace velldoc {

class Context;

//! \brief The upload of one local file.
struct UploadTask
{
    QString localPath;
    QString remotePath; //!< for messages and for --json
    RemotePath folderPath;
    QString parentId;
    QString name; //!< on the service
    std::optional<VellDocument> replaced; //!< the document for a new version
    bool isRenamed = false; //!< the wanted name was already taken
    qint64 sizeBytes = 0;
};

//! \brief The uploads of a command, decided before the first byte is sent: creates folders and decides conflicts.
//!
//! A file whose target has the same content is skipped, so that the same command continues where an earlier run has stopped.
class UploadPlan
{
public:
    //! \throws Failure
    explicit UploadPlan(Context &context);

    //! Adds the file, or the folder with all its contents, with the name \a name in the folder \a folder at
    //! \a path. \throws Failure
    void add(const QFileInfo &local, const VellDocument &folder, const RemotePath &path,
             const QString &name);

    //! Decides the conflicts of the added files. \throws Failure also if the decision is to cancel
    void settle();

    const QList<UploadTask> &tasks() const { return m_tasks; }
    qint64 totalBytes() const { return m_totalBytes; }
    //! Returns the local paths of files that the user has skipped.
    const QStringList &skipped() const { return m_skipped; }
    //! Returns the local paths of files that are already stored.
    const QStringList &unchanged() const { return m_unchanged; }

    //! Returns the local paths of entries that cannot be sent, each with the reason.
    const QList<QPair<QString, QString>> &unreadable() const { return m_unreadable; }

private:
    struct Place // the target of an entry
    {
        VellDocument folder;
        RemotePath path; // of the folder
        QString name;
        QString inRoot; // relative to the folder of the command line; empty for that folder
    };
    enum class Links { Refuse, Skip, Follow };

    void addEntry(const QFileInfo &local, const Place &place);
    void addTarget(const QFileInfo &local, const Place &place);
    void addFolder(const QFileInfo &local, const Place &place);
    void addFile(const QFileInfo &local, const Place &place);
    bool isLeftOut(const QFileInfo &local, const Place &place) const;
    bool isCircle(const QFileInfo &local) const;
    bool holdsWanted(const QString &folder, const QString &inRoot) const;
    QHash<QString, QString> readContents();
    bool isThere(const UploadTask &task, const QHash<QString, QString> &contents);
    bool settleConflict(UploadTask &task, const VellDocument &taken);
    void refuse(const QFileInfo &local, const QString &reason);

    Context &m_context;
    ConflictPolicy m_policy;
    const FilterOptions m_filterOptions;
    std::optional<VellPathFilter> m_filter; // for the folder that is being added
    Links m_links = Links::Refuse;
    QStringList
        m_above; // canonical paths of the local folder that is being read and of those above it
    QList<UploadTask> m_found;
    QList<UploadTask> m_tasks;
    qint64 m_totalBytes = 0;
    QStringList m_skipped;
    QStringList m_unchanged;
    QList<QPair<QString, QString>> m_unreadable;
};

} // namespace velldoc
