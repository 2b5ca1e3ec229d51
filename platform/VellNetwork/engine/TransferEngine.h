#pragma once

#include "Transfer.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

//! \brief Runs every transfer of this process over one pool of kept-alive connections.
//!
//! An I/O thread runs them. It starts with the first transfer and ends with the application object, or with the
//! process when there is none; a later transfer starts it again. A small request whose caller waits for it is
//! run by the caller's thread while nothing else is under way, and handed to the I/O thread when the response
//! takes longer: two threads that wake each other cost more than the request. Thread-safe.
class TransferEngine
{
public:
    static TransferEngine &instance();

    //! Sends the request of \a transfer.
    void start(const std::shared_ptr<Transfer> &transfer);
    //! For the caller that waits for \a transfer: runs it on the calling thread for a while, when it can.
    void drive(Transfer *transfer);
    //! Ends it; its connection is closed when it was in use. Nothing of it is reported afterwards.
    void cancel(const std::shared_ptr<Transfer> &transfer);
    //! Goes on with a transfer that was held back.
    void resume(Transfer *transfer);

    //! Ends the thread and every transfer without a word.
    void stop();

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;

    enum class Action { Start, Cancel, Resume };
    struct Command
    {
        Action action;
        Transfer *transfer;
        std::shared_ptr<Transfer> keeper; // keeps a transfer that starts
    };
    enum class Driver { Nobody, Caller, Thread };
    struct Session;

    TransferEngine() = default;
    void post(Command command);
    void startThread();
    void run(Session &session);
    void runTransfers(Session &session, Lock &lock);
    void release(Session &session, Lock lock);

    std::mutex m_mutex;
    std::condition_variable m_turn; // something in the session has changed
    std::shared_ptr<Session> m_session; // from the start of the thread to stop()
    std::thread m_thread;
};
