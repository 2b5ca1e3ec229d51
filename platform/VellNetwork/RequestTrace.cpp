#include "RequestTrace.h"

#include "ReplyWatch.h"

#include <QLoggingCategory>
#include <QMetaEnum>
#include <QStringList>

namespace {

Q_LOGGING_CATEGORY(networkLog, "vell.network", QtWarningMsg)

QString verb(const QNetworkReply *reply)
{
    switch (reply->operation()) {
    case QNetworkAccessManager::GetOperation:
        return QStringLiteral("GET");
    case QNetworkAccessManager::PostOperation:
        return QStringLiteral("POST");
    case QNetworkAccessManager::PutOperation:
        return QStringLiteral("PUT");
    default:
        return reply->request().attribute(QNetworkRequest::CustomVerbAttribute).toString();
    }
}

bool isSecret(const QString &name, const QString &value)
{
    static const QStringList secretNames{QStringLiteral("pwd"), QStringLiteral("password"),
                                         QStringLiteral("token"), QStringLiteral("access_token"),
                                         QStringLiteral("code")};
    // "pwd=true" asks for a password and is none.
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
    const QString status = QString::number(replyStatus(reply));
    const QString name = error == QNetworkReply::NoError ? QString()
                                                         : QLatin1Char(' ')
            + QLatin1String(QMetaEnum::fromType<QNetworkReply::NetworkError>().valueToKey(
                int(error)));
    // In one go: an address holds "%22" and the like, which a second arg() would take for its place.
    qCDebug(networkLog).noquote() << QStringLiteral("%1 %2 %3%4, %5 bytes sent, %6 received, %7 ms")
                                         .arg(verb(reply), shownAddress(reply->url()), status, name,
                                              QString::number(sentBytes),
                                              QString::number(reply->bytesAvailable()),
                                              QString::number(milliseconds));
}
