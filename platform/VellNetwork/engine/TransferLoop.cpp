#include "TransferLoop.h"

#include "CurlHandle.h"
#include "ProxyChoice.h"

#include <algorithm>

namespace {

// Enough that a few stalled requests do not block others, and few enough for any server.
constexpr long ConnectionsToOneServer = 32;
constexpr long KeptConnections = 32;
// Each has a buffer for received data.
constexpr size_t MostFreeHandles = 2;

// Nearly all servers keep connections for this time.
constexpr std::chrono::seconds IdleTime{5};

// There libcurl waits for an event that a socket is writable again, which Wine does not send.
#ifdef Q_OS_WIN
constexpr bool EventsGetLost = true;
#else
constexpr bool EventsGetLost = false;
#endif
constexpr std::chrono::milliseconds SendingWait{2};

} // namespace

TransferLoop::TransferLoop() : m_multi(curl_multi_init()), m_share(curl_share_init())
{
    curl_multi_setopt(m_multi, CURLMOPT_MAX_HOST_CONNECTIONS, ConnectionsToOneServer);
    curl_multi_setopt(m_multi, CURLMOPT_MAXCONNECTS, KeptConnections);
    curl_share_setopt(m_share, CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
}

TransferLoop::~TransferLoop()
{
    for (const auto &entry : m_handles)
        curl_multi_remove_handle(m_multi, entry.second->easy());
    m_handles.clear();
    m_freeHandles.clear();
    curl_multi_cleanup(m_multi);
    curl_share_cleanup(m_share);
}

bool TransferLoop::isPrepared(const TransferRequest &request) const
{
    return m_server.used > Clock::now() - IdleTime && request.url.host() == m_server.url.host()
        && request.url.port() == m_server.url.port()
        && request.url.scheme() == m_server.url.scheme()
        && isProxyAtHand(request.url, request.connection.proxy);
}

std::unique_ptr<CurlHandle> TransferLoop::freeHandle()
{
    if (m_freeHandles.empty())
        return std::make_unique<CurlHandle>(m_share, m_ages);
    std::unique_ptr<CurlHandle> handle = std::move(m_freeHandles.back());
    m_freeHandles.pop_back();
    return handle;
}

void TransferLoop::start(const std::shared_ptr<Transfer> &transfer)
{
    std::unique_ptr<CurlHandle> handle = freeHandle();
    const TransferRequest &request = transfer->request();
    handle->begin(transfer, proxyFor(request.url, request.connection.proxy));
    curl_multi_add_handle(m_multi, handle->easy());
    m_handles[transfer.get()] = std::move(handle);
}

void TransferLoop::cancel(Transfer *transfer)
{
    const auto found = m_handles.find(transfer);
    if (found == m_handles.end())
        return;
    curl_multi_remove_handle(m_multi, found->second->easy());
    m_handles.erase(found);
}

void TransferLoop::resume(Transfer *transfer)
{
    const auto found = m_handles.find(transfer);
    if (found != m_handles.end())
        found->second->resume();
}

void TransferLoop::perform()
{
    int running = 0;
    curl_multi_perform(m_multi, &running);
    int left = 0;
    while (const CURLMsg *message = curl_multi_info_read(m_multi, &left)) {
        if (message->msg == CURLMSG_DONE)
            finish(message->easy_handle, message->data.result);
    }
    for (const auto &entry : m_handles)
        entry.first->announce();
}

void TransferLoop::wait(std::chrono::milliseconds longest)
{
    if (EventsGetLost) {
        for (const auto &entry : m_handles) {
            if (entry.second->isSending())
                longest = std::min(longest, SendingWait);
        }
    }
    curl_multi_poll(m_multi, nullptr, 0, int(longest.count()), nullptr);
}

void TransferLoop::finish(CURL *easy, CURLcode code)
{
    CurlHandle *handle = CurlHandle::of(easy);
    curl_multi_remove_handle(m_multi, easy);
    if (handle->canStartAgain(code)) {
        curl_multi_add_handle(m_multi, easy);
        return;
    }
    // The connection is released first, because the caller may send the next request at once.
    auto finished = m_handles.extract(handle->transfer());
    if (code == CURLE_OK)
        m_server = {handle->transfer()->request().url, Clock::now()};
    const std::shared_ptr<Transfer> transfer = handle->finish(code);
    if (m_freeHandles.size() < MostFreeHandles)
        m_freeHandles.push_back(std::move(finished.mapped()));
    transfer->announce();
}
