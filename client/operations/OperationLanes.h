#pragma once

#include <operations/OperationRun.h>

#include <QThreadPool>

class VellOperation;

//! \brief The thread pools for the operations of a session, so that short operations do not wait for long ones.
class OperationLanes
{
public:
    enum class Lane {
        Short, //!< one short request
        List, //!< a list, which may be long
        Bulk, //!< many requests
    };

    OperationLanes();
    //! Waits for running operations: abort them before.
    ~OperationLanes();
    Q_DISABLE_COPY(OperationLanes)

    //! Starts \a operation as soon as its lane has a free thread. Call it once for each operation.
    void start(VellOperation *operation, Lane lane, const ServiceScope &scope);

private:
    static constexpr int LaneCount = 3;
    QThreadPool m_pools[LaneCount];
};
