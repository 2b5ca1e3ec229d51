#include <velldoc/system/WindowsFileName.h>

#include <QRegularExpression>

#include <algorithm>

namespace velldoc {

bool isWindowsFileName(const QString &name)
{
    static const QString reserved = QStringLiteral("/\\:*?\"<>|");
    // With any suffix: NUL.txt is a device, too.
    static const QRegularExpression device(
        QStringLiteral(
            "^(CON|PRN|AUX|NUL|COM[0-9\u00b9\u00b2\u00b3]|LPT[0-9\u00b9\u00b2\u00b3])\\s*(\\.|$)"),
        QRegularExpression::CaseInsensitiveOption);
    const bool hasReserved = std::any_of(name.begin(), name.end(), [](QChar c) {
        return c < QLatin1Char(' ') || reserved.contains(c);
    });
    return !name.isEmpty() && !hasReserved && !name.endsWith(QLatin1Char(' '))
        && !name.endsWith(QLatin1Char('.')) && !device.match(name).hasMatch();
}

} // namespace velldoc
