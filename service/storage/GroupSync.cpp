#include <service/storage/GroupSync.h>

#include <exception>

namespace service {

void GroupSync::wait(const std::function<void()> &write)
{
    std::unique_lock<std::mutex> lock(m_lock);
    const quint64 wanted = m_begun + 1;
    while (m_done < wanted) {
        if (m_isRunning) {
            m_hasEnded.wait(lock);
            continue;
        }
        m_isRunning = true;
        const quint64 number = ++m_begun;
        lock.unlock();
        std::exception_ptr failure;
        try {
            write();
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        m_isRunning = false;
        if (!failure)
            m_done = number;
        m_hasEnded.notify_all();
        if (failure)
            std::rethrow_exception(failure);
    }
}

} // namespace service
