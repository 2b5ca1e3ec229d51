#include "CurlHandle.h"

#include "ConnectionAges.h"

#include <QFile>

#include <algorithm>
#include <utility>

namespace {

constexpr long ReceiveBufferBytes = 131072;
constexpr long SmallestSendBufferBytes = 16384; // the minimum of libcurl
constexpr qint64 LargestSendBufferBytes = 262144;
constexpr int FirstFinalStatus = 200;

QByteArray fileName(const QString &path)
{
#ifdef Q_OS_WIN
    return path.toUtf8(); // libcurl requires UTF-8 there
#else
    return QFile::encodeName(path);
#endif
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view Blanks = " \t\r\n\v\f";
    const size_t start = std::min(text.find_first_not_of(Blanks), text.size());
    return text.substr(start, text.find_last_not_of(Blanks) + 1 - start);
}

//! Returns the text before and after the first \a separator; the whole text and an empty one if there is none.
std::pair<std::string_view, std::string_view> split(std::string_view text, char separator)
{
    const size_t end = std::min(text.find(separator), text.size());
    return {text.substr(0, end), text.substr(std::min(end + 1, text.size()))};
}

QByteArray bytesOf(std::string_view text)
{
    return QByteArray(text.data(), int(text.size()));
}

} // namespace

CurlHandle::CurlHandle(CURLSH *share, ConnectionAges &ages) : m_ages(ages), m_easy(curl_easy_init())
{
    curl_easy_setopt(m_easy, CURLOPT_SHARE, share); // permanent
}

CurlHandle::~CurlHandle()
{
    curl_easy_cleanup(m_easy);
    curl_slist_free_all(m_headers);
}

void CurlHandle::begin(const std::shared_ptr<Transfer> &transfer, const QByteArray &proxy)
{
    m_transfer = transfer;
    m_state = State();
    m_detail[0] = '\0';
    curl_easy_reset(m_easy);
    setOptions();
    setHeaders();
    setBody();
    setTls();
    setProxy(proxy);
}

CurlHandle *CurlHandle::of(CURL *easy)
{
    CurlHandle *handle = nullptr;
    curl_easy_getinfo(easy, CURLINFO_PRIVATE, &handle);
    return handle;
}

void CurlHandle::setOptions()
{
    const TransferRequest &request = m_transfer->request();
    curl_easy_setopt(m_easy, CURLOPT_PRIVATE, this);
    curl_easy_setopt(m_easy, CURLOPT_ERRORBUFFER, m_detail);
    curl_easy_setopt(m_easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(m_easy, CURLOPT_URL, request.url.toEncoded().constData());
    curl_easy_setopt(m_easy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(m_easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(m_easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(m_easy, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    curl_easy_setopt(m_easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(m_easy, CURLOPT_TCP_KEEPALIVE, 1L);
    curl_easy_setopt(m_easy, CURLOPT_CONNECTTIMEOUT_MS, 0x7fffffffL); // HttpReply has the time-out
    curl_easy_setopt(m_easy, CURLOPT_HEADERFUNCTION, &CurlHandle::onHeader);
    curl_easy_setopt(m_easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(m_easy, CURLOPT_WRITEFUNCTION, &CurlHandle::onData);
    curl_easy_setopt(m_easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(m_easy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(m_easy, CURLOPT_XFERINFOFUNCTION, &CurlHandle::onProgress);
    curl_easy_setopt(m_easy, CURLOPT_XFERINFODATA, this);
    curl_easy_setopt(m_easy, CURLOPT_PREREQFUNCTION, &CurlHandle::onConnected);
    curl_easy_setopt(m_easy, CURLOPT_PREREQDATA, this);
    curl_easy_setopt(m_easy, CURLOPT_SOCKOPTFUNCTION, &CurlHandle::onSocket);
    curl_easy_setopt(m_easy, CURLOPT_SOCKOPTDATA, this);
    curl_easy_setopt(m_easy, CURLOPT_RESOLVER_START_FUNCTION, &CurlHandle::onResolve);
    curl_easy_setopt(m_easy, CURLOPT_RESOLVER_START_DATA, this);
    const ConnectionOptions &connection = m_transfer->request().connection;
    curl_easy_setopt(m_easy, CURLOPT_MAX_SEND_SPEED_LARGE, curl_off_t(connection.sentPerSecond));
    curl_easy_setopt(m_easy, CURLOPT_MAX_RECV_SPEED_LARGE,
                     curl_off_t(connection.receivedPerSecond));
    // A whole buffer is received at once, whatever the limit.
    curl_easy_setopt(m_easy, CURLOPT_BUFFERSIZE,
                     connection.receivedPerSecond > 0 ? long(CURL_MAX_READ_SIZE / 512)
                                                      : ReceiveBufferBytes);
}

void CurlHandle::setHeaders()
{
    const TransferRequest &request = m_transfer->request();
    curl_slist_free_all(std::exchange(m_headers, nullptr));
    for (const QByteArray &line : request.headers)
        m_headers = curl_slist_append(m_headers, line.constData());
    // Without it libcurl delays a large body by up to a second.
    if (request.hasBody())
        m_headers = curl_slist_append(m_headers, "Expect:");
    curl_easy_setopt(m_easy, CURLOPT_HTTPHEADER, m_headers);
}

void CurlHandle::setBody()
{
    const TransferRequest &request = m_transfer->request();
    qint64 bodyBytes = -1;
    if (request.streamedBytes >= 0) {
        bodyBytes = request.streamedBytes;
        curl_easy_setopt(m_easy, CURLOPT_POST, 1L);
        curl_easy_setopt(m_easy, CURLOPT_READFUNCTION, &CurlHandle::onBodyWanted);
        curl_easy_setopt(m_easy, CURLOPT_READDATA, this);
    } else if (request.body) {
        bodyBytes = request.body->size();
        curl_easy_setopt(m_easy, CURLOPT_POSTFIELDS, request.body->constData());
    }
    if (bodyBytes >= 0) {
        curl_easy_setopt(m_easy, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(bodyBytes));
        // A whole buffer is sent at once, whatever the limit.
        const qint64 largest = request.connection.sentPerSecond > 0
            ? qint64(SmallestSendBufferBytes)
            : LargestSendBufferBytes;
        curl_easy_setopt(m_easy, CURLOPT_UPLOAD_BUFFERSIZE,
                         std::max(SmallestSendBufferBytes, long(std::min(bodyBytes, largest))));
    }
    if (request.method == "HEAD")
        curl_easy_setopt(m_easy, CURLOPT_NOBODY, 1L);
    else if (request.method != (bodyBytes < 0 ? "GET" : "POST"))
        curl_easy_setopt(m_easy, CURLOPT_CUSTOMREQUEST, request.method.constData());
}

void CurlHandle::setTls()
{
    const ConnectionOptions &connection = m_transfer->request().connection;
    if (connection.caCertificates.isEmpty()) {
        // libcurl caches certificates for the next connection only if there is no folder of certificates.
        curl_easy_setopt(m_easy, CURLOPT_CAPATH, nullptr);
    } else {
        curl_easy_setopt(m_easy, CURLOPT_CAINFO, fileName(connection.caCertificates).constData());
    }
    if (connection.clientCertificate.isEmpty())
        return;
    curl_easy_setopt(m_easy, CURLOPT_SSLCERT, fileName(connection.clientCertificate).constData());
    if (connection.clientCertificate.endsWith(QLatin1String(".pfx"), Qt::CaseInsensitive)
        || connection.clientCertificate.endsWith(QLatin1String(".p12"), Qt::CaseInsensitive))
        curl_easy_setopt(m_easy, CURLOPT_SSLCERTTYPE, "P12");
    if (!connection.clientKey.isEmpty())
        curl_easy_setopt(m_easy, CURLOPT_SSLKEY, fileName(connection.clientKey).constData());
    if (!connection.clientKeyPassword.isEmpty())
        curl_easy_setopt(m_easy, CURLOPT_KEYPASSWD,
                         connection.clientKeyPassword.toUtf8().constData());
}

void CurlHandle::setProxy(const QByteArray &proxy)
{
    const TransferRequest &request = m_transfer->request();
    m_state.isOverProxy = !proxy.isEmpty();
    // Set even if it is empty, so that libcurl does not choose one itself.
    curl_easy_setopt(m_easy, CURLOPT_PROXY, proxy.constData());
    curl_easy_setopt(m_easy, CURLOPT_NOPROXY, "");
    // Other methods need an extra request: a tunnel only once, but a plain request each time, with its body.
    const bool isTunnel = request.url.scheme() == QLatin1String("https");
    curl_easy_setopt(m_easy, CURLOPT_PROXYAUTH, isTunnel ? CURLAUTH_ANY : CURLAUTH_BASIC);
    if (m_state.isOverProxy && !request.connection.caCertificates.isEmpty())
        curl_easy_setopt(m_easy, CURLOPT_PROXY_CAINFO,
                         fileName(request.connection.caCertificates).constData());
}

bool CurlHandle::isSending() const
{
    const TransferRequest &request = m_transfer->request();
    return m_state.sentBytes < (request.body ? request.body->size() : request.streamedBytes);
}

bool CurlHandle::canStartAgain(CURLcode code)
{
    if (code != CURLE_ABORTED_BY_CALLBACK || !m_state.needsNewConnection)
        return false;
    m_state.needsNewConnection = false;
    curl_easy_setopt(m_easy, CURLOPT_FRESH_CONNECT, 1L);
    return true;
}

std::shared_ptr<Transfer> CurlHandle::finish(CURLcode code)
{
    if (m_state.localPort > 0) {
        QByteArray keepAlive;
        for (const auto &field : std::as_const(m_state.head.fields)) {
            if (field.first.compare("keep-alive", Qt::CaseInsensitive) == 0)
                keepAlive = field.second;
        }
        m_ages.setUsed(m_state.localPort, keepAlive);
    }
    TransferEnd end;
    end.curlCode = m_state.isRepeatRefused ? CURLE_GOT_NOTHING : code;
    end.detail = m_detail;
    end.isOverProxy = m_state.isOverProxy;
    end.isEncrypted =
        m_state.isSent && m_transfer->request().url.scheme() == QLatin1String("https");
    long systemError = 0;
    curl_easy_getinfo(m_easy, CURLINFO_OS_ERRNO, &systemError);
    end.systemError = int(systemError);
    curl_easy_getinfo(m_easy, CURLINFO_SSL_VERIFYRESULT, &end.verifyResult);
    long proxyStatus = 0;
    curl_easy_getinfo(m_easy, CURLINFO_HTTP_CONNECTCODE, &proxyStatus);
    end.proxyStatus = int(proxyStatus);
    m_transfer->setEnd(end);
    return std::exchange(m_transfer, nullptr);
}

void CurlHandle::resume()
{
    curl_easy_pause(m_easy, CURLPAUSE_CONT);
}

size_t CurlHandle::onHeader(char *data, size_t size, size_t count, void *self)
{
    static_cast<CurlHandle *>(self)->readHeaderLine(std::string_view(data, size * count));
    return size * count;
}

void CurlHandle::readHeaderLine(std::string_view line)
{
    m_transfer->noteActivity();
    ResponseHead &head = m_state.head;
    const std::string_view text = trimmed(line);
    if (line.substr(0, 5) == "HTTP/") {
        const auto [version, rest] = split(text, ' ');
        const auto [status, reason] = split(rest, ' ');
        head = ResponseHead();
        head.status = bytesOf(status).toInt();
        head.reason = bytesOf(reason);
        m_state.isHeadComplete = false;
        return;
    }
    if (m_state.isHeadComplete) // trailers
        return;
    if (text.empty()) {
        m_state.isHeadComplete = head.status >= FirstFinalStatus;
        if (m_state.isHeadComplete)
            m_transfer->setHead(head);
        return;
    }
    const auto [name, value] = split(text, ':');
    if ((line.front() == ' ' || line.front() == '\t') && !head.fields.isEmpty())
        head.fields.last().second += ' ' + bytesOf(text);
    else if (!name.empty() && name.size() < text.size())
        head.fields.append({bytesOf(trimmed(name)), bytesOf(trimmed(value))});
}

size_t CurlHandle::onData(char *data, size_t size, size_t count, void *self)
{
    Transfer &transfer = *static_cast<CurlHandle *>(self)->m_transfer;
    transfer.noteActivity();
    return transfer.addData(data, qint64(size * count)) ? size * count : CURL_WRITEFUNC_PAUSE;
}

size_t CurlHandle::onBodyWanted(char *data, size_t size, size_t count, void *self)
{
    Transfer &transfer = *static_cast<CurlHandle *>(self)->m_transfer;
    const qint64 taken = transfer.takeBody(data, qint64(size * count));
    if (taken == 0)
        return CURL_READFUNC_PAUSE;
    transfer.noteActivity();
    return size_t(taken);
}

int CurlHandle::onProgress(void *self, curl_off_t, curl_off_t data, curl_off_t, curl_off_t body)
{
    auto *handle = static_cast<CurlHandle *>(self);
    if (data != handle->m_state.receivedBytes || body != handle->m_state.sentBytes)
        handle->m_transfer->noteActivity();
    handle->m_state.receivedBytes = data;
    if (body != handle->m_state.sentBytes) {
        handle->m_state.sentBytes = body;
        handle->m_transfer->setSentBytes(body);
    }
    return 0;
}

int CurlHandle::onConnected(void *self, char *, char *, int, int localPort)
{
    return static_cast<CurlHandle *>(self)->allowRequest(localPort);
}

int CurlHandle::allowRequest(int localPort)
{
    m_transfer->noteActivity();
    if (m_transfer->request().isChange()) {
        // libcurl repeats a request if its kept-alive connection turns out to be closed.
        m_state.isRepeatRefused = m_state.isSent;
        m_state.needsNewConnection =
            !m_state.isSent && m_state.localPort == 0 && !m_ages.isSafe(localPort);
        m_state.localPort = localPort;
        if (m_state.isRepeatRefused || m_state.needsNewConnection)
            return CURL_PREREQFUNC_ABORT;
    }
    m_state.localPort = localPort;
    m_state.isSent = true;
    return CURL_PREREQFUNC_OK;
}

int CurlHandle::onSocket(void *self, curl_socket_t, curlsocktype)
{
    static_cast<CurlHandle *>(self)->m_transfer->noteActivity();
    return CURL_SOCKOPT_OK;
}

int CurlHandle::onResolve(void *, void *, void *self)
{
    static_cast<CurlHandle *>(self)->m_transfer->noteActivity();
    return 0;
}
