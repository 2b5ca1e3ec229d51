#pragma once

#include <QtGlobal>

#include <chrono>
#include <mutex>

namespace service {

class Database;

//! \brief The time by the clock of the database, so that all services of a database have the same. Thread-safe.
//!
//! Asks every few seconds, and counts from the last answer meanwhile.
class DatabaseClock
{
public:
    //! Returns milliseconds since 1970 UTC. \throws DatabaseError if there was never an answer
    qint64 nowMs(Database &database);

private:
    using Clock = std::chrono::steady_clock;

    std::mutex m_lock;
    Clock::time_point m_askedAt;
    qint64 m_answerMs = 0; //!< 0 if there was none
};

} // namespace service
