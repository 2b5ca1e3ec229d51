#include <service/http/WorkerPool.h>

#include <utility>

namespace service {

WorkerPool::WorkerPool(int threadCount) : m_threadCount(threadCount)
{
    for (int i = 0; i < threadCount; ++i)
        m_threads.emplace_back([this] { work(); });
}

WorkerPool::~WorkerPool()
{
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_isEnding = true;
    }
    m_hasJobs.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

void WorkerPool::post(std::function<void()> job)
{
    ++m_busyCount;
    {
        const std::lock_guard<std::mutex> lock(m_lock);
        m_jobs.push_back(std::move(job));
    }
    m_hasJobs.notify_one();
}

void WorkerPool::work()
{
    std::unique_lock<std::mutex> lock(m_lock);
    for (;;) {
        m_hasJobs.wait(lock, [this] { return m_isEnding || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        {
            const std::function<void()> job = std::move(m_jobs.front());
            m_jobs.pop_front();
            lock.unlock();
            job();
        }
        --m_busyCount;
        lock.lock();
    }
}

} // namespace service
