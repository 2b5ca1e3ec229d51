#pragma once

#include <QtGlobal>

#include <condition_variable>
#include <functional>
#include <mutex>

namespace service {

//! \brief Writes a file to the disk for all threads that wait for it, instead of once for each.
//!
//! A thread that comes while the file is being written waits for the next time, which then covers everybody who came meanwhile.
class GroupSync
{
public:
    //! Returns when \a write has run, in this thread or another one, from beginning to end after this call.
    //! \throws what \a write throws in this thread; the others then run their own
    void wait(const std::function<void()> &write);

private:
    std::mutex m_lock;
    std::condition_variable m_hasEnded;
    bool m_isRunning = false;
    quint64 m_begun = 0;
    quint64 m_done = 0; // the latest that was successful
};

} // namespace service
