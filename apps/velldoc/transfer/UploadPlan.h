#pragma once

#include <document_model/VellDocument.h>
#include <velldoc/RemotePath.h>
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

//! \brief One local file on its way to a place in the project.
struct UploadTask
{
    QString localPath;
    QString remotePath; //!< for people and for --json
    RemotePath folderPath;
    QString parentId;
    QString name; //!< there
    std::optional<VellDocument> replaced; //!< the document that gets a new version
    bool isRenamed = false; //!< the wanted name was taken
    qint64 sizeBytes = 0;
};

//! \brief Which files are to go where, settled before the first byte is sent: folders made, conflicts decided.
//!
//! A file whose target has the same content is left as it is, so that the same command goes on where an earlier run has stopped.
class UploadPlan
{
public:
    //! \throws Failure
    explicit UploadPlan(Context &context);

    //! Adds the file or the folder with everything below, to become \a name in the folder \a folder at
    //! \a path. \throws Failure
    void add(const QFileInfo &local, const VellDocument &folder, const RemotePath &path,
             const QString &name);

    //! Decides about the files that have been added. \throws Failure; also for the decision to cancel
    void settle();

    const QList<UploadTask> &tasks() const { return m_tasks; }
    qint64 totalBytes() const { return m_totalBytes; }
    //! Local paths, by the user's decision.
    const QStringList &skipped() const { return m_skipped; }
    //! Local paths of files that are there already.
    const QStringList &unchanged() const { return m_unchanged; }

    //! Local paths that cannot be sent, each with the reason.
    const QList<QPair<QString, QString>> &unreadable() const { return m_unreadable; }

private:
    struct Place // where an entry goes
    {
        VellDocument folder;
        RemotePath path; // of the folder
        QString name;
        QString inRoot; // from the folder that was named; empty for that itself
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
    std::optional<VellPathFilter> m_filter; // of the folder that is being added
    Links m_links = Links::Refuse;
    QStringList m_above; // canonical paths of the local folders that are being read
    QList<UploadTask> m_found;
    QList<UploadTask> m_tasks;
    qint64 m_totalBytes = 0;
    QStringList m_skipped;
    QStringList m_unchanged;
    QList<QPair<QString, QString>> m_unreadable;
};

} // namespace velldoc
