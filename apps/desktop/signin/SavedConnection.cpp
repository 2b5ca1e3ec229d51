#include <desktop/signin/SavedConnection.h>

#include <QCoreApplication>
#include <QUrl>

namespace desktop {

QString SavedConnection::title() const
{
    if (isOwn)
        return QCoreApplication::translate("desktop::SavedConnection", "This computer");
    const QUrl url(address);
    QString host = url.host();
    if (url.port() >= 0)
        host += QLatin1Char(':') + QString::number(url.port());
    QString text = projectName.isEmpty() ? projectId : projectName;
    if (text.isEmpty())
        return host;
    text += QStringLiteral(" — ") + host;
    return userName.isEmpty() ? text : text + QStringLiteral(" (%1)").arg(userName);
}

VellConnection SavedConnection::connection() const
{
    VellConnection connection;
    connection.address = address;
    connection.accessToken = token;
    connection.caCertificates = caCertificates;
    connection.proxy = proxy;
    return connection;
}

} // namespace desktop
