#include <desktop/signin/ErrorAdvice.h>

namespace desktop {

using Reason = NetworkFailure::Reason;

QString ErrorAdvice::of(const VellError &error)
{
    switch (error.reason) {
    case Reason::NameNotFound:
        return tr("Check the address.");
    case Reason::ConnectionRefused:
        return tr("Check the address, and that the service is running.");
    case Reason::CertificateUntrusted:
    case Reason::CertificateSelfSigned:
        return tr("Its certificate is signed by an unknown authority. If it is the authority of "
                  "your organization, trust it.");
    case Reason::CertificateExpired:
        return tr("Its certificate has expired or is not valid yet: the administrator must renew "
                  "it. Check the date of this computer, too.");
    case Reason::CertificateWrongHost:
        return tr("Its certificate is for another name. Use that name in the address.");
    case Reason::ClientCertificateNeeded:
        return tr("It requires a client certificate, which this program does not support.");
    case Reason::NoTls:
        return tr("Check whether the address begins with http or https, and the port.");
    case Reason::ProxyNotFound:
    case Reason::ProxyUnreachable:
    case Reason::ProxyLoginNeeded:
    case Reason::ProxyRefused:
        return tr("Check the proxy. \"none\" connects directly.");
    default:
        break;
    }
    if (error.kind == VellError::Kind::NotSignedIn)
        return tr("Enter the access token that you have received from the administrator.");
    return {};
}

QString ErrorAdvice::fullText(const VellError &error)
{
    QString text = error.text;
    const QString advice = of(error);
    if (!advice.isEmpty())
        text += QLatin1Char(' ') + advice;
    else if (!error.detail.isEmpty())
        text += QLatin1Char(' ') + error.detail;
    return text;
}

bool ErrorAdvice::isCuredByTrust(const VellError &error)
{
    return error.reason == Reason::CertificateUntrusted
        || error.reason == Reason::CertificateSelfSigned;
}

} // namespace desktop
