#pragma once

#include "ConnectionAges.h"
#include "Transfer.h"

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <unordered_map>
#include <vector>

class CurlHandle;

//! \brief The transfers that run, and libcurl's pool of connections.
//!
//! Belongs to one thread at a time, which the owner sees to; only wake() is thread-safe.
class TransferLoop
{
public:
    TransferLoop();
    //! Ends every transfer without a word.
    ~TransferLoop();
    Q_DISABLE_COPY(TransferLoop)

    //! There is nothing to perform.
    bool isIdle() const { return m_handles.empty(); }
    bool has(Transfer *transfer) const { return m_handles.count(transfer) > 0; }

    //! Whether start() only has to write \a request to a connection that is most likely there, because a response
    //! of the same server has just ended.
    bool isPrepared(const TransferRequest &request) const;

    void start(const std::shared_ptr<Transfer> &transfer);
    //! Does nothing when the transfer has ended.
    void cancel(Transfer *transfer);
    //! Goes on with a transfer that was held back; does nothing when it has ended.
    void resume(Transfer *transfer);

    //! Sends and receives what can be without waiting, and tells the receivers.
    void perform();
    //! Waits until there is something to perform, or for wake(), or for \a longest.
    void wait(std::chrono::milliseconds longest);
    void wake() { curl_multi_wakeup(m_multi); }

private:
    using Clock = std::chrono::steady_clock;

    //! Where the last response came from.
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
