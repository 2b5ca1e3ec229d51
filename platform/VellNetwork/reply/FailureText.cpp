#include "FailureText.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <curl/curl.h>

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <cerrno>
#endif

using Reason = NetworkFailure::Reason;
using Reply = QNetworkReply;

namespace {

constexpr int LongestErrorBody = 65536;
constexpr int ForbiddenStatus = 403;
constexpr int ProxyLoginStatus = 407;
constexpr int TooLargeStatus = 413;

#ifdef Q_OS_WIN
constexpr int RefusedBySystem = WSAECONNREFUSED;
#else
constexpr int RefusedBySystem = ECONNREFUSED;
#endif

struct StatusRow
{
    int status;
    Reply::NetworkError error;
};
constexpr StatusRow StatusRows[] = {
    {400, Reply::ProtocolInvalidOperationError},
    {401, Reply::AuthenticationRequiredError},
    {403, Reply::ContentAccessDenied},
    {404, Reply::ContentNotFoundError},
    {405, Reply::ContentOperationNotPermittedError},
    {407, Reply::ProxyAuthenticationRequiredError},
    {409, Reply::ContentConflictError},
    {410, Reply::ContentGoneError},
    {418, Reply::ProtocolInvalidOperationError},
    {500, Reply::InternalServerError},
    {501, Reply::OperationNotImplementedError},
    {503, Reply::ServiceUnavailableError},
};

Reply::NetworkError errorOfStatus(int status)
{
    for (const StatusRow &row : StatusRows) {
        if (row.status == status)
            return row.error;
    }
    if (status > 500)
        return Reply::UnknownServerError;
    return status >= 400 ? Reply::UnknownContentError : Reply::ProtocolFailure;
}

// OpenSSL has error numbers; Schannel and libcurl have messages.
struct CertificateRow
{
    long verifyResult;
    const char *words;
    Reason reason;
};
constexpr CertificateRow CertificateRows[] = {
    {9, "not yet valid", Reason::CertificateExpired},
    {10, "has expired", Reason::CertificateExpired},
    {10, "CERT_EXPIRED", Reason::CertificateExpired},
    {10, "NOT_TIME_VALID", Reason::CertificateExpired},
    {19, "in certificate chain", Reason::CertificateUntrusted},
    {18, "self-signed certificate", Reason::CertificateSelfSigned},
    {-1, "subject name", Reason::CertificateWrongHost},
    {-1, "does not match", Reason::CertificateWrongHost},
    {-1, "did not match", Reason::CertificateWrongHost},
    {-1, "WRONG_PRINCIPAL", Reason::CertificateWrongHost},
};

Reason certificateReason(const TransferEnd &end)
{
    for (const CertificateRow &row : CertificateRows) {
        if (row.verifyResult == end.verifyResult)
            return row.reason;
    }
    for (const CertificateRow &row : CertificateRows) {
        if (end.detail.contains(row.words))
            return row.reason;
    }
    return Reason::CertificateUntrusted;
}

// Messages of servers that require a certificate, during a handshake or instead of a response.
bool asksForClientCertificate(const TransferEnd &end)
{
    return end.curlCode == CURLE_SSL_CLIENTCERT || end.detail.contains("certificate required")
        || end.detail.contains("alert bad certificate") || end.detail.contains("alert unknown ca");
}

bool isLost(int curlCode)
{
    switch (curlCode) {
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_SEND_FAIL_REWIND:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
        return true;
    default:
        return false;
    }
}

QString serverOf(const QUrl &url)
{
    return url.port() < 0 ? url.host() : QStringLiteral("%1:%2").arg(url.host()).arg(url.port());
}

QByteArray field(const ResponseHead &head, const char *lowerCaseName)
{
    for (const auto &entry : head.fields) {
        if (entry.first.toLower() == lowerCaseName)
            return entry.second;
    }
    return {};
}

QString wordsOfService(const QByteArray &body)
{
    if (body.isEmpty() || body.size() > LongestErrorBody)
        return {};
    return QJsonDocument::fromJson(body).object().value(QLatin1String("error")).toString();
}

} // namespace

RequestFailure FailureText::ofTransfer(const TransferEnd &end, const QUrl &url)
{
    const auto server = [&] { return serverOf(url); };
    if (asksForClientCertificate(end)) {
        return {Reply::SslHandshakeFailedError, Reason::ClientCertificateNeeded,
                tr("%1 requires a client certificate").arg(server())};
    }
    if (end.isOverProxy || end.curlCode == CURLE_COULDNT_RESOLVE_PROXY) {
        RequestFailure failure = ofProxy(end);
        if (failure.error != Reply::NoError)
            return failure;
    }
    if (isLost(end.curlCode)) {
        return {Reply::RemoteHostClosedError, Reason::ConnectionLost,
                end.curlCode == CURLE_PARTIAL_FILE
                    ? tr("The connection was closed before the end of the response")
                    : tr("The connection was closed before the response arrived")};
    }
    switch (end.curlCode) {
    case CURLE_OK:
        return {};
    case CURLE_COULDNT_RESOLVE_HOST:
        return {Reply::HostNotFoundError, Reason::NameNotFound,
                tr("The host %1 was not found").arg(url.host())};
    case CURLE_COULDNT_CONNECT:
        if (end.systemError == RefusedBySystem) {
            return {Reply::ConnectionRefusedError, Reason::ConnectionRefused,
                    tr("%1 refused the connection: no program is listening there").arg(server())};
        }
        return {Reply::UnknownNetworkError, Reason::Other,
                tr("%1 cannot be reached: %2").arg(server(), qt_error_string(end.systemError))};
    case CURLE_OPERATION_TIMEDOUT:
        return timedOut();
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
        return {Reply::ProtocolFailure, Reason::Other,
                tr("%1 does not respond with HTTP").arg(server())};
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CIPHER:
        return ofTls(end, url);
    default:
        return {Reply::UnknownNetworkError, Reason::Other, QString::fromUtf8(end.detail)};
    }
}

RequestFailure FailureText::ofTls(const TransferEnd &end, const QUrl &url)
{
    const QString host = url.host();
    RequestFailure failure{Reply::SslHandshakeFailedError, Reason::Other, {}};
    if (end.curlCode == CURLE_SSL_CERTPROBLEM) {
        failure.reason = Reason::ClientCertificateUnreadable;
        failure.message = tr("The client certificate or its key cannot be used");
    } else if (end.curlCode == CURLE_SSL_CACERT_BADFILE) {
        failure.message = tr("The file of trusted certificate authorities cannot be read");
    } else if (end.curlCode == CURLE_PEER_FAILED_VERIFICATION) {
        failure.reason = certificateReason(end);
        switch (failure.reason) {
        case Reason::CertificateExpired:
            failure.message = tr("The certificate of %1 has expired or is not valid yet").arg(host);
            break;
        case Reason::CertificateSelfSigned:
            failure.message = tr("%1 has a self-signed certificate").arg(host);
            break;
        case Reason::CertificateWrongHost:
            failure.message = tr("The certificate of the server is not valid for %1").arg(host);
            break;
        default:
            failure.message =
                tr("The certificate of %1 is signed by an authority that is not trusted here")
                    .arg(host);
        }
    } else {
        failure.reason = Reason::NoTls;
        failure.message = tr("A TLS connection to %1 could not be established").arg(serverOf(url));
    }
    if (!end.detail.isEmpty())
        failure.message += QStringLiteral(" (%1)").arg(QString::fromUtf8(end.detail));
    return failure;
}

QString FailureText::proxyRefusal(int status)
{
    return tr("The proxy refused the request (status %1)").arg(status);
}

RequestFailure FailureText::ofProxy(const TransferEnd &end)
{
    if (end.curlCode == CURLE_COULDNT_RESOLVE_PROXY) {
        return {Reply::ProxyNotFoundError, Reason::ProxyNotFound,
                tr("The host of the proxy was not found")};
    }
    if (end.proxyStatus == ProxyLoginStatus) {
        return {Reply::ProxyAuthenticationRequiredError, Reason::ProxyLoginNeeded,
                tr("The proxy requires a user name and a password, or does not accept them")};
    }
    if (end.proxyStatus >= 300) {
        return {Reply::UnknownProxyError, Reason::ProxyRefused, proxyRefusal(end.proxyStatus)};
    }
    if (end.curlCode == CURLE_COULDNT_CONNECT) {
        return {Reply::ProxyConnectionRefusedError, Reason::ProxyUnreachable,
                tr("The proxy cannot be reached")};
    }
    if (end.curlCode == CURLE_PROXY) {
        return {Reply::UnknownProxyError, Reason::ProxyRefused,
                tr("The proxy refused the request")};
    }
    return {};
}

RequestFailure FailureText::ofResponse(const ResponseHead &head, const QByteArray &body,
                                       bool isOverProxy)
{
    if (head.status / 100 == 2)
        return {};
    RequestFailure failure{errorOfStatus(head.status), Reason::Other, wordsOfService(body)};
    const QString statusText =
        QStringLiteral("%1 %2").arg(head.status).arg(QString::fromLatin1(head.reason)).trimmed();
    // The service responds with JSON; a page is from a server in front of it.
    const bool isPage = field(head, "content-type").startsWith("text/html");
    QString words = tr("The service responded with %1").arg(statusText);
    if (head.status == ProxyLoginStatus) {
        failure.reason = Reason::ProxyLoginNeeded;
        words = tr("The proxy requires a user name and a password, or does not accept them");
    } else if (isOverProxy && isPage && head.status == ForbiddenStatus) {
        failure.reason = Reason::ProxyRefused;
        words = proxyRefusal(head.status);
    } else if (head.status == TooLargeStatus) {
        failure.reason = Reason::BodyTooLarge;
        if (isPage)
            words = tr("The server in front of the service does not accept bodies of this size "
                       "(%1); in nginx the limit is client_max_body_size")
                        .arg(statusText);
    } else if (isPage && head.status >= 502 && head.status <= 504) {
        failure.reason = Reason::GatewayFailed;
        words = tr("The server in front of the service cannot reach it (%1)").arg(statusText);
    } else if (isPage && body.contains("SSL certificate")) {
        failure.reason = Reason::ClientCertificateNeeded;
        words = tr("The server requires a client certificate (%1)").arg(statusText);
    } else if (isPage && body.contains("HTTP request was sent to HTTPS port")) {
        words = tr("The server requires https at this port (%1)").arg(statusText);
    }
    if (failure.message.isEmpty())
        failure.message = words;
    return failure;
}

RequestFailure FailureText::timedOut()
{
    return {Reply::TimeoutError, Reason::TimedOut, tr("Nothing was sent or received for too long")};
}

RequestFailure FailureText::cancelled()
{
    return {Reply::OperationCanceledError, Reason::Other, tr("The request was cancelled")};
}

RequestFailure FailureText::badAddress()
{
    return {Reply::ProtocolUnknownError, Reason::Other,
            tr("The address is not a valid address with http or https")};
}

RequestFailure FailureText::brokenBody()
{
    return {Reply::UnknownNetworkError, Reason::Other, tr("The file could not be read completely")};
}

RequestFailure FailureText::tooLargeToKeep()
{
    return {Reply::UnknownContentError, Reason::Other,
            tr("The response is too large for the memory")};
}

RequestFailure FailureText::refusedRedirect(const QString &why)
{
    return {Reply::InsecureRedirectError, Reason::RedirectRefused, why};
}

RequestFailure FailureText::tooManyRedirects()
{
    return {Reply::TooManyRedirectsError, Reason::RedirectRefused,
            tr("The service redirected too many times")};
}
