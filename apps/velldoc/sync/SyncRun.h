#pragma once

#include <velldoc/documents/RemotePath.h>

#include <sync/VellSyncMemory.h>
#include <sync/VellSyncPlan.h>

#include <QJsonArray>
#include <QList>
#include <QPair>

#include <optional>

namespace velldoc {

class Context;

//! \brief Compares a local folder with a folder of the service, and makes one equal to the other.
class SyncRun
{
public:
    //! \param remote the folder on the service, which is created for VellSyncDirection::Up if it does not exist
    //! \throws Failure
    SyncRun(Context &context, VellSyncDirection direction, const QString &localRoot,
            const RemotePath &remote);

    //! Compares the folders. \throws Failure
    void compare();
    //! Executes the steps. \throws Failure if a step has failed
    void execute();
    //! Prints the steps of execute().
    void show();

    const VellSyncPlan &plan() const { return m_plan; }

private:
    VellSyncOptions options() const;
    void keepNewerTargets();
    void makeFolders();
    void move();
    void transfer();
    void remove();
    bool removeLocal(const VellSyncStep &step);
    QString parentIdOf(const VellSyncStep &step) const;
    void fail(const VellSyncStep &step, const QString &reason);
    void finish();
    QJsonObject resultJson() const;

    Context &m_context;
    const VellSyncDirection m_direction;
    const QString m_localRoot;
    const RemotePath m_remote;
    QString m_rootId;
    QDateTime m_comparedAt;
    VellSyncPlan m_plan;
    std::optional<VellSyncMemory> m_memory;
    QHash<QString, QString> m_folderIds; // created folders, by path
    QList<QPair<QString, QString>> m_failed; // path and reason
    QJsonArray m_done;
    qint64 m_bytes = 0;
    int m_doneCount = 0;
};

//! Prints the entries that the plan excludes, with the reasons. \return their number
int reportProblems(Context &context, const VellSyncPlan &plan,
                   QList<QPair<QString, QString>> *failed);

} // namespace velldoc
