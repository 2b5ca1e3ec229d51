#include <velldoc/output/DisplayWidth.h>

#include <QVector>

#include <algorithm>
#include <array>

namespace velldoc {

namespace {

struct Range
{
    uint first;
    uint last;
};

//! Characters with Unicode's East Asian Width "W" and "F"; adjacent blocks are merged if there is no narrow character in between.
constexpr std::array<Range, 36> WideRanges{{
    {0x1100, 0x115F},   {0x231A, 0x231B}, {0x2329, 0x232A}, {0x23E9, 0x23EC}, {0x23F0, 0x23F0},
    {0x23F3, 0x23F3},   {0x25FD, 0x25FE}, {0x2614, 0x2615}, {0x2648, 0x2653}, {0x267F, 0x267F},
    {0x2693, 0x2693},   {0x26A1, 0x26A1}, {0x26AA, 0x26AB}, {0x26BD, 0x26BE}, {0x26C4, 0x26C5},
    {0x26CE, 0x26CE},   {0x26D4, 0x26D4}, {0x26EA, 0x26EA}, {0x26F2, 0x26F3}, {0x2705, 0x2705},
    {0x2728, 0x2728},   {0x274C, 0x274C}, {0x2753, 0x2755}, {0x2795, 0x2797}, {0x2B1B, 0x2B1C},
    {0x2E80, 0x303E},   {0x3041, 0x4DBF}, {0x4E00, 0xA4CF}, {0xA960, 0xA97F}, {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},   {0xFE30, 0xFE6F}, {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1FAFF},
    {0x20000, 0x3FFFD},
}};

bool isWide(uint character)
{
    const auto *const range =
        std::lower_bound(WideRanges.begin(), WideRanges.end(), character,
                         [](const Range &r, uint value) { return r.last < value; });
    return range != WideRanges.end() && range->first <= character;
}

//! Full-width punctuation that must not be at the beginning of a line.
bool isClosing(uint character)
{
    constexpr std::array<uint, 9> Closing{0x3001, 0x3002, 0x201D, 0xFF01, 0xFF09,
                                          0xFF0C, 0xFF1A, 0xFF1B, 0xFF1F};
    return std::find(Closing.begin(), Closing.end(), character) != Closing.end();
}

int characterWidth(uint character)
{
    if (character >= ' ' && character <= '~')
        return 1;
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return 0;
    default:
        return isWide(character) ? 2 : 1;
    }
}

bool steersTerminal(uint character)
{
    const QChar::Category category = QChar::category(character);
    // Bidirectional controls can make a name look like another one.
    return category == QChar::Other_Control || category == QChar::Separator_Line
        || category == QChar::Separator_Paragraph || (character >= 0x202A && character <= 0x202E)
        || (character >= 0x2066 && character <= 0x2069);
}

} // namespace

int displayWidth(const QString &text)
{
    int width = 0;
    // Without a copy, because tables measure every cell of ten thousand rows.
    for (int i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        const bool isPair =
            unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair)
            ++i;
        width += characterWidth(isPair ? QChar::surrogateToUcs4(unit, text.at(i)) : unit.unicode());
    }
    return width;
}

QString elided(const QString &text, int width)
{
    if (displayWidth(text) <= width)
        return text;
    QString result;
    int used = 1; // the ellipsis
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        used += characterWidth(character);
        if (used > width)
            break;
        result += QString::fromUcs4(&character, 1);
    }
    return result + QChar(0x2026);
}

QString padded(const QString &text, int width, Qt::Alignment alignment)
{
    const QString spaces(qMax(0, width - displayWidth(text)), QLatin1Char(' '));
    return alignment.testFlag(Qt::AlignRight) ? spaces + text : text + spaces;
}

QStringList wrapped(const QString &text, int width)
{
    QStringList lines;
    QString line;
    QString word; // a part that must not be broken, with the spaces before it
    const auto takeWord = [&] {
        if (!line.isEmpty() && displayWidth(line + word) > width) {
            lines.append(line);
            line.clear();
            word = word.trimmed();
        }
        line += word;
        word.clear();
    };
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        if (character == ' ' || (isWide(character) && !isClosing(character)))
            takeWord();
        word += QString::fromUcs4(&character, 1);
    }
    takeWord();
    lines.append(line);
    return lines;
}

QString printable(const QString &text)
{
    // Each of these characters is one UTF-16 code unit.
    QString result = text;
    for (int i = 0; i < text.size(); ++i) {
        if (steersTerminal(text.at(i).unicode()))
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}

} // namespace velldoc
