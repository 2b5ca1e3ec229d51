#include <operations/VellError.h>

#include <QCoreApplication>

namespace {

using Kind = VellError::Kind;
using Reason = NetworkFailure::Reason;

class ErrorText
{
    Q_DECLARE_TR_FUNCTIONS(VellError)

public:
    static QString of(Kind kind)
    {
        switch (kind) {
        case Kind::None:
            return {};
        case Kind::Offline:
            return tr("The service cannot be reached.");
        case Kind::TimedOut:
            return tr("The service did not respond in time.");
        case Kind::Certificate:
            return tr("The connection to the service is not secure.");
        case Kind::Proxy:
            return tr("The proxy refused the request.");
        case Kind::BadAddress:
            return tr("There is no document service at this address.");
        case Kind::NotSignedIn:
            return tr("The service does not accept the token: sign in again.");
        case Kind::NotAllowed:
            return tr("You do not have the right to do this.");
        case Kind::NotFound:
            return tr("It no longer exists.");
        case Kind::NameTaken:
            return tr("An entry with this name already exists.");
        case Kind::BadName:
            return tr("This name is not valid.");
        case Kind::NoRoom:
            return tr("The disk is full.");
        case Kind::TooLarge:
            return tr("This is larger than the service allows.");
        case Kind::ChangedMeanwhile:
            return tr("It has been changed meanwhile.");
        case Kind::LocalFile:
            return tr("The local file cannot be read or written.");
        case Kind::Busy:
            return tr("The service is busy: try again later.");
        case Kind::Refused:
            return tr("The service refused the request.");
        case Kind::ServiceFailed:
            return tr("The service reported an internal error.");
        case Kind::Cancelled:
            return tr("Cancelled.");
        case Kind::Unclear:
            return tr("The service did not confirm the request.");
        }
        return {};
    }
};

Kind kindOf(Reason reason)
{
    switch (reason) {
    case Reason::NameNotFound:
    case Reason::ConnectionRefused:
    case Reason::ConnectionLost:
    case Reason::GatewayFailed:
        return Kind::Offline;
    case Reason::TimedOut:
        return Kind::TimedOut;
    case Reason::CertificateUntrusted:
    case Reason::CertificateSelfSigned:
    case Reason::CertificateExpired:
    case Reason::CertificateWrongHost:
    case Reason::ClientCertificateNeeded:
    case Reason::ClientCertificateUnreadable:
    case Reason::NoTls:
        return Kind::Certificate;
    case Reason::ProxyNotFound:
    case Reason::ProxyUnreachable:
    case Reason::ProxyLoginNeeded:
    case Reason::ProxyRefused:
        return Kind::Proxy;
    case Reason::BodyTooLarge:
        return Kind::TooLarge;
    case Reason::RedirectRefused:
        return Kind::BadAddress;
    case Reason::Other:
        break;
    }
    return Kind::None;
}

Kind kindOf(int httpStatus)
{
    switch (httpStatus) {
    case 0:
        return Kind::Offline;
    case 401:
        return Kind::NotSignedIn;
    case 403:
        return Kind::NotAllowed;
    case 404:
    case 410:
        return Kind::NotFound;
    case 408:
        return Kind::TimedOut;
    case 409:
    case 412:
        return Kind::ChangedMeanwhile;
    case 413:
        return Kind::TooLarge;
    case 429:
    case 503:
        return Kind::Busy;
    case 507:
        return Kind::NoRoom;
    default:
        return httpStatus >= 500 ? Kind::ServiceFailed : Kind::Refused;
    }
}

} // namespace

bool VellError::isTemporary() const
{
    switch (kind) {
    case Kind::Offline:
    case Kind::TimedOut:
    case Kind::Busy:
    case Kind::ServiceFailed:
    case Kind::Unclear:
        return true;
    default:
        return false;
    }
}

VellError VellError::of(Kind kind, const QString &text, const QString &detail)
{
    VellError error;
    error.kind = kind;
    error.text = text.isEmpty() ? ErrorText::of(kind) : text;
    error.detail = detail;
    return error;
}

VellError VellError::of(const NetworkFailure &failure)
{
    if (failure.error == QNetworkReply::OperationCanceledError)
        return cancelled();
    Kind kind = kindOf(failure.reason);
    if (kind == Kind::None && failure.error == QNetworkReply::ProtocolUnknownError)
        kind = Kind::BadAddress;
    // An incomplete response has a status, too.
    if (kind == Kind::None)
        kind = failure.httpStatus / 100 == 2 ? Kind::Offline : kindOf(failure.httpStatus);
    VellError error = of(kind, {}, failure.message);
    error.httpStatus = failure.httpStatus;
    error.reason = failure.reason;
    return error;
}
