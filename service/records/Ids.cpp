#include <service/records/Ids.h>

#include <QCryptographicHash>
#include <QDateTime>
#include <QRandomGenerator>

namespace service {

namespace {

QString randomHex(int digits)
{
    QString text;
    while (text.size() < digits)
        text += QStringLiteral("%1").arg(QRandomGenerator::system()->generate(), 8, 16,
                                         QLatin1Char('0'));
    return text.left(digits);
}

} // namespace

QString newId()
{
    const auto seconds = static_cast<quint32>(QDateTime::currentSecsSinceEpoch());
    return QStringLiteral("%1").arg(seconds, 8, 16, QLatin1Char('0')) + randomHex(16);
}

QString newSecret()
{
    return randomHex(64);
}

QString secretHash(const QString &secret)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(secret.toUtf8(), QCryptographicHash::Sha256).toHex());
}

} // namespace service
