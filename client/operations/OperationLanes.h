#pragma once

#include <operations/OperationRun.h>

#include <QThreadPool>

class VellOperation;

//! \brief The threads on which a session's operations work, so that a short one never waits behind long ones.
class OperationLanes
{
public:
    enum class Lane {
        Short, //!< one request that somebody waits for
        List, //!< a list, which may be long
        Bulk, //!< many requests
    };

    OperationLanes();
    //! Waits for what is running: abort it before.
    ~OperationLanes();
    Q_DISABLE_COPY(OperationLanes)

    //! Starts \a operation, once, as soon as its lane has room.
    void start(VellOperation *operation, Lane lane, const ServiceScope &scope);

private:
    static constexpr int LaneCount = 3;
    QThreadPool m_pools[LaneCount];
};
