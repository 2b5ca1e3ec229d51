#include "TransferEngine.h"

#include "TransferLoop.h"

#include <QCoreApplication>

#ifdef VELL_HAS_OPENSSL
#include <openssl/crypto.h>
#endif

#include <utility>
#include <vector>

using std::chrono::milliseconds;

namespace {

constexpr milliseconds LongestWait{60000};
// A caller that waits calls drive() earlier after start(); otherwise the I/O thread takes over after this time.
constexpr milliseconds TimeToComeBack{2};
// For this time after a request of a caller the I/O thread polls for work, so that the caller need not wake it for the
// next request.
constexpr milliseconds WatchTime{100};
// Processing no events for this time is not noticeable.
constexpr milliseconds LongestDrive{2};

} // namespace

//! Guarded by the mutex of the engine, except for the loop, which belongs to the driver.
struct TransferEngine::Session
{
    TransferLoop loop;
    std::vector<Command> commands;
    Driver driver = Driver::Nobody;
    Clock::time_point takeOver; // when the I/O thread takes over what a caller has started
    bool isThreadAtRest = false; // it waits without a time-out
    bool isStopped = false;
};

TransferEngine &TransferEngine::instance()
{
    // Never destroyed, because replies may outlive the static objects of this library.
    static auto *engine = new TransferEngine;
    return *engine;
}

void TransferEngine::start(const std::shared_ptr<Transfer> &transfer)
{
    if (transfer->request().isSmallAndAwaited()) {
        Lock lock(m_mutex);
        Session *session = m_session.get();
        if (session && session->driver == Driver::Nobody && session->commands.empty()
            && session->loop.isPrepared(transfer->request())) {
            session->driver = Driver::Caller;
            lock.unlock();
            session->loop.start(transfer);
            session->loop.perform();
            lock.lock();
            session->takeOver = Clock::now() + TimeToComeBack;
            release(*session, std::move(lock));
            return;
        }
    }
    post({Action::Start, transfer.get(), transfer});
}

void TransferEngine::drive(Transfer *transfer)
{
    Lock lock(m_mutex);
    Session *session = m_session.get();
    if (!session || session->driver != Driver::Nobody)
        return;
    session->driver = Driver::Caller;
    TransferLoop &loop = session->loop;
    const Clock::time_point end = Clock::now() + LongestDrive;
    Clock::time_point now;
    while (session->commands.empty() && !session->isStopped && loop.has(transfer)
           && (now = Clock::now()) < end) {
        lock.unlock();
        loop.wait(std::chrono::ceil<milliseconds>(end - now));
        loop.perform();
        lock.lock();
    }
    session->takeOver = now;
    release(*session, std::move(lock));
}

// When nobody drives, stop() may end the session.
void TransferEngine::release(Session &session, Lock lock)
{
    session.driver = Driver::Nobody;
    const bool isThreadNeeded =
        !session.loop.isIdle() && (session.isThreadAtRest || Clock::now() >= session.takeOver);
    const bool isAwaited = isThreadNeeded || !session.commands.empty() || session.isStopped;
    lock.unlock();
    if (isAwaited)
        m_turn.notify_all();
}

void TransferEngine::cancel(const std::shared_ptr<Transfer> &transfer)
{
    transfer->detach();
    post({Action::Cancel, transfer.get(), transfer});
}

void TransferEngine::resume(Transfer *transfer)
{
    post({Action::Resume, transfer, nullptr});
}

void TransferEngine::post(Command command)
{
    const Lock lock(m_mutex);
    if (!m_session) {
        if (command.action != Action::Start)
            return;
        startThread();
    }
    m_session->commands.push_back(std::move(command));
    if (m_session->driver == Driver::Nobody)
        m_turn.notify_all();
    else
        m_session->loop.wake();
}

void TransferEngine::startThread()
{
    // In this order, so that a process without an application object ends the thread before the objects that
    // it uses.
    static const CURLcode initialized = curl_global_init(CURL_GLOBAL_DEFAULT);
    Q_UNUSED(initialized)
#ifndef Q_OS_WIN // where all threads have already ended then
    struct StopAtExit
    {
        ~StopAtExit() { TransferEngine::instance().stop(); }
    };
    static const StopAtExit stopAtExit;
#endif
    qAddPostRoutine([] { TransferEngine::instance().stop(); });

    m_session = std::make_shared<Session>();
    m_thread = std::thread([this, session = m_session] { run(*session); });
}

void TransferEngine::run(Session &session)
{
    Lock lock(m_mutex);
    while (!session.isStopped) {
        const Clock::time_point now = Clock::now();
        const bool isFree = session.driver == Driver::Nobody;
        if (isFree
            && (!session.commands.empty() || (!session.loop.isIdle() && now >= session.takeOver))) {
            runTransfers(session, lock);
        } else if (now < session.takeOver + WatchTime) {
            m_turn.wait_until(lock, now + TimeToComeBack);
        } else {
            session.isThreadAtRest = true;
            m_turn.wait(lock);
            session.isThreadAtRest = false;
        }
    }
}

void TransferEngine::runTransfers(Session &session, Lock &lock)
{
    session.driver = Driver::Thread;
    TransferLoop &loop = session.loop;
    while (!session.isStopped && (!session.commands.empty() || !loop.isIdle())) {
        const std::vector<Command> commands = std::exchange(session.commands, {});
        lock.unlock();
        for (const Command &command : commands) {
            switch (command.action) {
            case Action::Start:
                loop.start(command.keeper);
                break;
            case Action::Cancel:
                loop.cancel(command.transfer);
                break;
            case Action::Resume:
                loop.resume(command.transfer);
                break;
            }
        }
        loop.perform();
        if (!loop.isIdle())
            loop.wait(LongestWait);
        lock.lock();
    }
    session.driver = Driver::Nobody;
}

void TransferEngine::stop()
{
    std::shared_ptr<Session> session;
    std::thread thread;
    {
        Lock lock(m_mutex);
        session = std::exchange(m_session, nullptr);
        thread = std::move(m_thread);
        if (!session)
            return;
        session->isStopped = true;
        session->loop.wake();
        m_turn.notify_all();
        m_turn.wait(lock, [&] { return session->driver != Driver::Caller; });
    }
    thread.join();
}

void TransferEngine::leaveThread()
{
#ifdef VELL_HAS_OPENSSL
    OPENSSL_thread_stop();
#endif
}
