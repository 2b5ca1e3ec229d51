#include "RequestTrace.h"

#include <QLoggingCategory>
#include <QMetaEnum>
#include <QStringList>
#include <QUrl>

namespace {

Q_LOGGING_CATEGORY(networkLog, "vell.network", QtWarningMsg)

bool isSecret(const QString &name, const QString &value)
{
    static const QStringList secretNames{QStringLiteral("pwd"), QStringLiteral("password"),
                                         QStringLiteral("token"), QStringLiteral("access_token"),
                                         QStringLiteral("code")};
    // "pwd=true" requests a password and is not one.
    return secretNames.contains(name, Qt::CaseInsensitive) && value != QLatin1String("true")
        && value != QLatin1String("false");
}

QString shownAddress(const QUrl &url)
{
    const auto options = QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::FullyEncoded;
    QString address = url.toString(options);
    if (!url.hasQuery())
        return address;
    QStringList parameters = url.query(QUrl::FullyEncoded).split(QLatin1Char('&'));
    for (QString &parameter : parameters) {
        const int mark = parameter.indexOf(QLatin1Char('='));
        if (mark >= 0 && isSecret(parameter.left(mark), parameter.mid(mark + 1)))
            parameter = parameter.left(mark + 1) + QLatin1String("***");
    }
    return address + QLatin1Char('?') + parameters.join(QLatin1Char('&'));
}

} // namespace

void RequestTrace::write() const
{
    if (!networkLog().isDebugEnabled())
        return;
    const QString status =
        QString::number(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt());
    const QString name = error == QNetworkReply::NoError ? QString()
                                                         : QLatin1Char(' ')
            + QLatin1String(QMetaEnum::fromType<QNetworkReply::NetworkError>().valueToKey(
                int(error)));
    // With one call: addresses contain "%22" and the like, which a second arg() would replace.
    qCDebug(networkLog).noquote() << QStringLiteral("%1 %2 %3%4, %5 bytes sent, %6 received, %7 ms")
                                         .arg(QString::fromLatin1(method),
                                              shownAddress(reply->url()), status, name,
                                              QString::number(sentBytes),
                                              QString::number(receivedBytes),
                                              QString::number(milliseconds));
}
