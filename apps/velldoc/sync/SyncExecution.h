#pragma once

#include <sync/VellSyncMemory.h>
#include <sync/VellSyncPlan.h>

#include <QDateTime>
#include <QHash>
#include <QString>

namespace velldoc {

class Context;
class SyncReport;
class Transfers;

//! \brief Executes the steps of a plan.
class SyncExecution
{
public:
    //! \param comparedAt when the comparison began: local files that were changed later are not removed
    SyncExecution(Context &context, const VellSyncPlan &plan, const QDateTime &comparedAt,
                  VellSyncMemory &memory, SyncReport &report);

    //! \throws Failure if the remaining steps would fail, too
    void run();

private:
    using Steps = QHash<qint64, VellSyncStep>; // by transfer

    void makeFolders();
    void move();
    void moveRemote(const VellSyncStep &step);
    void transfer();
    Steps addTransfers(Transfers &transfers) const;
    void reportTransfers(const Transfers &transfers, const Steps &steps);
    void remove();
    bool removeLocal(const VellSyncStep &step);
    QList<VellSyncStep> steps(VellSyncStep::Action action) const;
    QString parentIdOf(const VellSyncStep &step) const;

    Context &m_context;
    const VellSyncPlan &m_plan;
    const bool m_isUp;
    const QDateTime m_comparedAt;
    VellSyncMemory &m_memory;
    SyncReport &m_report;
    QHash<QString, QString> m_folderIds; // created folders, by path
};

} // namespace velldoc
