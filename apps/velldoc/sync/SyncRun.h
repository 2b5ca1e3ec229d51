#pragma once

#include <velldoc/documents/RemotePath.h>
#include <velldoc/sync/SyncReport.h>

#include <sync/VellSyncMemory.h>
#include <sync/VellSyncPlan.h>

#include <QDateTime>
#include <QString>

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
    void finish();

    Context &m_context;
    const VellSyncDirection m_direction;
    const QString m_localRoot;
    QString m_rootId;
    QDateTime m_comparedAt;
    VellSyncPlan m_plan;
    std::optional<VellSyncMemory> m_memory;
    SyncReport m_report;
};

} // namespace velldoc
