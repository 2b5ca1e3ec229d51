#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace service {

//! \brief A fixed number of threads that run jobs in the order in which they were posted. Thread-safe.
class WorkerPool
{
public:
    explicit WorkerPool(int threadCount);
    ~WorkerPool(); //!< runs all posted jobs, then ends the threads

    void post(std::function<void()> job);

    //! Returns true if a thread is free for another job.
    bool hasFreeThread() const { return m_busyCount.load() < m_threadCount; }

private:
    void work();

    const int m_threadCount;
    std::atomic<int> m_busyCount{0}; //!< jobs that wait or run
    std::mutex m_lock;
    std::condition_variable m_hasJobs;
    std::deque<std::function<void()>> m_jobs;
    bool m_isEnding = false;
    std::vector<std::thread> m_threads;
};

} // namespace service
