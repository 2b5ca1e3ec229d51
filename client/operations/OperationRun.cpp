#include <operations/OperationRun.h>

#include <operations/VellOperation.h>

#include <VellNetwork/NetworkEventLoop.h>
#include <VellNetwork/NetworkManager.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QCoreApplication>
#include <QEvent>
#include <QThreadPool>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

constexpr int PartCount = 4;

} // namespace

OperationRun::OperationRun(const ServiceScope &scope, std::function<void(OperationRun &)> work,
                           VellOperation *receiver)
    : m_scope(scope), m_requests(scope.settings), m_work(std::move(work)), m_receiver(receiver)
{}

void OperationRun::runScoped(const std::function<void()> &work)
{
    {
        const RequestScope requests(m_requests);
        const VellSoftCacheScope project(m_scope.projectId, m_scope.userId);
        work();
    }
    // The thread continues without an event loop.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void OperationRun::execute()
{
    m_hasStarted = true;
    VellError error;
    runScoped([&] {
        try {
            checkAborted();
            m_work(*this);
        } catch (const OperationFailure &failure) {
            error = failure.error;
        }
    });
    report([error](VellOperation *receiver) { receiver->end(error); });
}

void OperationRun::checkAborted() const
{
    if (m_requests.isAborted())
        throw OperationFailure{VellError::cancelled()};
}

void OperationRun::deleteResource(const QString &path)
{
    change([&] {
        NetworkEventLoop loop(NetworkManager::instance()->deleteResource(address(path)));
        loop.exec();
        return loop.isSuccessful();
    });
}

void OperationRun::throwFailure() const
{
    checkAborted();
    if (const auto failure = m_requests.failure())
        throw OperationFailure{VellError::of(*failure)};
}

void OperationRun::setProgress(qint64 done, qint64 total)
{
    report([done, total](VellOperation *receiver) { Q_EMIT receiver->progressed(done, total); });
}

void OperationRun::abort()
{
    m_requests.abort();
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (OperationRun *const part : m_parts)
        part->abort();
}

void OperationRun::forEach(int count, const std::function<void(OperationRun &run, int index)> &work)
{
    std::atomic<int> next{0};
    std::vector<std::unique_ptr<OperationRun>> parts;
    QThreadPool threads;
    threads.setMaxThreadCount(PartCount);
    for (int i = 0; i < std::min(PartCount, count); ++i)
        parts.push_back(std::make_unique<OperationRun>(m_scope, nullptr, nullptr));
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (const auto &part : parts)
            m_parts.push_back(part.get());
        // An abort() before this has not reached the parts.
        if (m_requests.isAborted()) {
            for (const auto &part : parts)
                part->abort();
        }
    }
    for (const auto &part : parts) {
        threads.start([&work, &next, count, run = part.get()] {
            run->runScoped([&] {
                for (int index = next++; index < count; index = next++)
                    work(*run, index);
            });
        });
    }
    threads.waitForDone();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_parts.clear();
}

void OperationRun::detach()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_receiver = nullptr;
}

void OperationRun::report(std::function<void(VellOperation *)> call)
{
    // Queued under the lock, so that the receiver still exists; if it is deleted later, its events are deleted with it.
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_receiver)
        return;
    QMetaObject::invokeMethod(
        m_receiver, [call = std::move(call), receiver = m_receiver] { call(receiver); },
        Qt::QueuedConnection);
}
