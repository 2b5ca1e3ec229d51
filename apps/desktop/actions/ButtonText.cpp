#include <desktop/actions/ButtonText.h>

#include <QRegularExpression>

namespace desktop {

QString buttonText(const QString &text)
{
    static const QRegularExpression key(QStringLiteral("\\(&\\w\\)"));
    QString shown = text;
    return shown.remove(key).remove(QLatin1Char('&')).remove(QStringLiteral("…"));
}

} // namespace desktop
