#pragma once

#include "ConnectionAges.h"
#include "Transfer.h"

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <unordered_map>
#include <vector>

class CurlHandle;

//! \brief The running transfers and the connection pool of libcurl.
//!
//! The owner must ensure that only one thread at a time uses it; only wake() is thread-safe.
class TransferLoop
{
public:
    TransferLoop();
    //! Ends all transfers without reporting it.
    ~TransferLoop();
    Q_DISABLE_COPY(TransferLoop)

    //! Returns true if there is no transfer.
    bool isIdle() const { return m_handles.empty(); }
    bool has(Transfer *transfer) const { return m_handles.count(transfer) > 0; }

    //! Returns true if start() can send \a request over a connection that most likely exists, because a response of the same server
    //! has just ended.
    bool isPrepared(const TransferRequest &request) const;

    void start(const std::shared_ptr<Transfer> &transfer);
    //! Has no effect if the transfer has ended.
    void cancel(Transfer *transfer);
    //! Continues a paused transfer; has no effect if it has ended.
    void resume(Transfer *transfer);

    //! Sends and receives without waiting, and notifies the receivers.
    void perform();
    //! Waits until there is something to do, or for wake(), for at most \a longest.
    void wait(std::chrono::milliseconds longest);
    void wake() { curl_multi_wakeup(m_multi); }

private:
    using Clock = std::chrono::steady_clock;

    //! The server of the last response.
    struct Server
    {
        QUrl url;
        Clock::time_point used;
    };

    std::unique_ptr<CurlHandle> freeHandle();
    void finish(CURL *easy, CURLcode code);

    CURLM *m_multi;
    CURLSH *m_share;
    ConnectionAges m_ages;
    Server m_server;
    std::unordered_map<Transfer *, std::unique_ptr<CurlHandle>> m_handles;
    std::vector<std::unique_ptr<CurlHandle>> m_freeHandles;
};
