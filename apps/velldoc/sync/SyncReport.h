#pragma once

#include <sync/VellSyncPlan.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

namespace velldoc {

class Context;

//! \brief What a synchronization has done and what has failed: the lines for the user and the result.
class SyncReport
{
public:
    SyncReport(const Context &context, VellSyncDirection direction)
        : m_context(context), m_direction(direction)
    {}

    //! Adds an executed step, which is printed with -v, and always in a dry run.
    void addDone(const VellSyncStep &step);
    void addFailed(const QString &path, const QString &reason);
    //! Adds the entries that \a plan excludes, except links with "--links skip".
    void addProblems(const VellSyncPlan &plan);

    int failureCount() const { return m_failed.size(); }
    //! Prints a line for each failure.
    void printFailures() const;
    //! Prints how much has been done or, in a dry run, is to be done.
    void printSummary(int unchangedCount) const;
    QJsonObject resultJson() const;

private:
    struct Failed
    {
        QString path;
        QString reason;
    };

    const Context &m_context;
    const VellSyncDirection m_direction;
    QList<Failed> m_failed;
    QJsonArray m_done;
    qint64 m_bytes = 0;
    int m_fileCount = 0;
    int m_movedCount = 0;
    int m_removedCount = 0;
};

} // namespace velldoc
