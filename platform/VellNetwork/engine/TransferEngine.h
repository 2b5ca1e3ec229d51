#pragma once

#include "Transfer.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

//! \brief Runs all transfers of this process with one pool of kept-alive connections.
//!
//! They run on an I/O thread, which starts with the first transfer and ends with the application object, or with the process if there
//! is none; a later transfer starts it again. A small request that a caller waits for is run by the thread of the caller if nothing else
//! is in progress, and passed to the I/O thread if the response takes longer, because two threads that wake each other take more time
//! than the request. Thread-safe.
class TransferEngine
{
public:
    static TransferEngine &instance();

    //! Sends the request of \a transfer.
    void start(const std::shared_ptr<Transfer> &transfer);
    //! Runs \a transfer, which the caller waits for, on the calling thread for some time, if possible.
    void drive(Transfer *transfer);
    //! Ends a transfer, and closes its connection if it was in use. Nothing is reported afterwards.
    void cancel(const std::shared_ptr<Transfer> &transfer);
    //! Continues a paused transfer.
    void resume(Transfer *transfer);

    //! Ends the thread and all transfers without reporting it.
    void stop();

    //! Frees what the TLS library keeps for the calling thread, which has started or driven transfers. The system would do so only after
    //! Qt has called the thread finished, when the process may already be ending.
    static void leaveThread();

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;

    enum class Action { Start, Cancel, Resume };
    struct Command
    {
        Action action;
        Transfer *transfer;
        std::shared_ptr<Transfer> keeper; // keeps a transfer alive while it starts
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
    std::condition_variable m_turn; // the session has changed
    std::shared_ptr<Session> m_session; // from the start of the thread to stop()
    std::thread m_thread;
};
