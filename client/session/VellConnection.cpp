#include <session/VellConnection.h>

#include <QCoreApplication>
#include <QUrl>

namespace {

class AddressText
{
    Q_DECLARE_TR_FUNCTIONS(VellConnection)

public:
    static QString problemOf(const QString &address)
    {
        if (address.trimmed().isEmpty())
            return tr("The address of the service is missing.");
        const QUrl url(address);
        const QString scheme = url.scheme();
        if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
            if (address.contains(QLatin1String("://")))
                return tr("The address \"%1\" does not begin with http:// or https://.")
                    .arg(address);
            return tr("The address \"%1\" has no scheme: write https://%1 or http://%1.")
                .arg(address);
        }
        if (!url.isValid() || url.host().isEmpty())
            return tr("The address \"%1\" has no host.").arg(address);
        return {};
    }
};

} // namespace

VellError VellConnection::problem() const
{
    const QString text = AddressText::problemOf(address);
    return text.isEmpty() ? VellError() : VellError::of(VellError::Kind::BadAddress, text);
}

RequestSettings VellConnection::requestSettings() const
{
    return {address, accessToken, caCertificates, clientCertificate, proxy};
}
