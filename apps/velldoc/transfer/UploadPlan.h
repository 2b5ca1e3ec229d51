#pragma once

#include <document_model/VellDocument.h>
#include <velldoc/RemotePath.h>
#include <velldoc/transfer/ConflictPolicy.h>

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
    QString parentId;
    QString name; //!< there
    std::optional<VellDocument> replaced; //!< the document that gets a new version
    bool isRenamed = false; //!< the wanted name was taken
    qint64 sizeBytes = 0;
};

//! \brief Which files are to go where, settled before the first byte is sent: folders made, conflicts
//! decided.
class UploadPlan
{
public:
    UploadPlan(Context &context, ConflictPolicy policy);

    //! Adds the file or the folder with everything below, to become \a name in the folder \a folder at
    //! \a path. \throws Failure; also for the decision to cancel
    void add(const QFileInfo &local, const VellDocument &folder, const RemotePath &path,
             const QString &name);

    const QList<UploadTask> &tasks() const { return m_tasks; }
    qint64 totalBytes() const { return m_totalBytes; }
    const QStringList &skipped() const
    {
        return m_skipped;
    } //!< local paths, by the user's decision

    //! Local paths that cannot be sent, each with the reason.
    const QList<QPair<QString, QString>> &unreadable() const { return m_unreadable; }

private:
    void addFolder(const QFileInfo &local, const VellDocument &folder, const RemotePath &path,
                   const QString &name);
    void addFile(const QFileInfo &local, const VellDocument &folder, const RemotePath &path,
                 const QString &name);
    bool settleConflict(UploadTask &task, const VellDocument &taken, const RemotePath &folderPath);
    void refuse(const QFileInfo &local, const QString &reason);

    Context &m_context;
    ConflictPolicy m_policy;
    QList<UploadTask> m_tasks;
    qint64 m_totalBytes = 0;
    QStringList m_skipped;
    QList<QPair<QString, QString>> m_unreadable;
};

} // namespace velldoc
