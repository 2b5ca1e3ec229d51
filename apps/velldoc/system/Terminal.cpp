#include <velldoc/system/Terminal.h>

#include <QByteArray>

namespace velldoc {

namespace {

constexpr int UsualColumns = 80;

} // namespace

int terminal::width(std::FILE *stream)
{
    if (!isTerminal(stream))
        return 0;
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("COLUMNS", &isNumber);
    if (isNumber && wanted > 0)
        return wanted;
    const int columns = columnsOf(stream);
    return columns > 0 ? columns : UsualColumns;
}

bool terminal::hasColour(std::FILE *stream)
{
    return qEnvironmentVariableIsEmpty("NO_COLOR") && hasSequences(stream);
}

bool terminal::readLine(QString *line)
{
    QByteArray bytes;
    for (;;) {
        const int byte = readByte();
        if (byte < 0)
            return false;
        if (byte == '\n')
            break;
        bytes.append(static_cast<char>(byte));
    }
    *line = QString::fromUtf8(bytes).trimmed();
    return true;
}

bool terminal::readHiddenLine(const QString &prompt, QString *line)
{
    // Before the prompt, so that nothing typed is shown.
    const HiddenInput hidden;
    write(stderr, prompt);
    const bool isRead = readLine(line);
    write(stderr, QStringLiteral("\n"));
    return isRead;
}

} // namespace velldoc
