#include <velldoc/output/Output.h>

#include <velldoc/Failure.h>
#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/Table.h>
#include <velldoc/output/Terminal.h>

#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <utility>

namespace velldoc {

namespace {

//! Whoever read the output has read enough, as "head" does: nothing that the user must be told.
bool isReaderGone = false;

void writeLine(std::FILE *stream, const QString &line)
{
    errno = 0;
    if (!terminal::write(stream, line + QLatin1Char('\n')) && errno == EPIPE)
        isReaderGone = true;
}

} // namespace

void Output::print(const QString &line) const
{
    if (!m_isJson)
        writeLine(stdout, line);
}

void Output::print(const Table &table) const
{
    if (m_isJson)
        return;
    const QStringList lines = table.lines(terminal::width(stdout));
    writeLine(stdout, strong(lines.constFirst()));
    for (int i = 1; i < lines.size(); ++i)
        writeLine(stdout, lines.at(i));
}

void Output::flush() const
{
    errno = 0;
    if (std::fflush(stdout) != 0 && errno == EPIPE)
        isReaderGone = true;
}

void Output::note(const QString &sentence) const
{
    if (m_isJson)
        return;
    flush(); // where both streams meet, in the order of the calls
    writeLine(stderr, printable(sentence));
}

void Output::error(const QString &sentence) const
{
    flush();
    const QString prefix = terminal::hasColour(stderr) ? QStringLiteral("\x1b[31mvelldoc:\x1b[0m ")
                                                       : QStringLiteral("velldoc: ");
    writeLine(stderr, prefix + printable(sentence));
}

bool Output::finish(const Failure *failure)
{
    if (m_isJson && !std::exchange(m_isFinished, true)) {
        QJsonObject document{{QStringLiteral("command"), m_command},
                             {QStringLiteral("ok"), failure == nullptr},
                             {QStringLiteral("result"), m_result}};
        if (failure != nullptr) {
            const QJsonValue status =
                failure->httpStatus() > 0 ? QJsonValue(failure->httpStatus()) : QJsonValue();
            document.insert(QStringLiteral("error"),
                            QJsonObject{{QStringLiteral("exitCode"), int(failure->code())},
                                        {QStringLiteral("status"), status},
                                        {QStringLiteral("message"), failure->sentence()}});
        }
        writeLine(stdout,
                  QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Compact)));
    }
    flush();
    return isReaderGone || std::ferror(stdout) == 0;
}

QString Output::strong(const QString &text)
{
    return terminal::hasColour(stdout) ? QStringLiteral("\x1b[1m%1\x1b[0m").arg(text) : text;
}

} // namespace velldoc
