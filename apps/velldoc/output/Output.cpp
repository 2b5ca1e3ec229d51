#include <velldoc/output/Output.h>

#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/Log.h>
#include <velldoc/output/ResultRows.h>
#include <velldoc/output/Table.h>
#include <velldoc/program/Failure.h>
#include <velldoc/system/Terminal.h>

#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <utility>

namespace velldoc {

namespace {

bool isReaderGone = false;

QJsonObject resultJson(const QString &command, const QJsonObject &result, const Failure *failure)
{
    QJsonObject document{{QStringLiteral("command"), command},
                         {QStringLiteral("ok"), failure == nullptr},
                         {QStringLiteral("result"), result}};
    if (failure != nullptr) {
        const QJsonValue status =
            failure->httpStatus() > 0 ? QJsonValue(failure->httpStatus()) : QJsonValue();
        document.insert(QStringLiteral("error"),
                        QJsonObject{{QStringLiteral("exitCode"), int(failure->code())},
                                    {QStringLiteral("status"), status},
                                    {QStringLiteral("message"), failure->sentence()}});
    }
    return document;
}

//! Returns \a sentence for the standard error: on a terminal without control characters, and wrapped between words.
QString message(const QString &sentence)
{
    const int width = terminal::width(stderr);
    return width > 0 ? wrapped(printable(sentence), width).join(QLatin1Char('\n'))
                     : printable(sentence);
}

void writeLine(std::FILE *stream, const QString &line)
{
    errno = 0;
    if (!terminal::write(stream, line + QLatin1Char('\n')) && errno == EPIPE)
        Output::noteReaderGone();
}

} // namespace

QString Output::shown(const QString &text)
{
    static const bool isShown = terminal::isTerminal(stdout);
    return isShown ? printable(text) : text;
}

void Output::printName(const QString &name) const
{
    if (isJson())
        return;
    if (m_hasNulEnds)
        terminal::write(stdout, name + QChar::Null);
    else
        writeLine(stdout, shown(name));
}

void Output::print(const QString &line) const
{
    if (!isJson())
        writeLine(stdout, line);
}

void Output::print(const Table &table) const
{
    if (isJson())
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
        noteReaderGone();
}

void Output::noteReaderGone()
{
    isReaderGone = true;
}

void Output::note(const QString &sentence) const
{
    writeLog(sentence);
    if (isJson())
        return;
    flush(); // if both streams are shown in one place, they are in the order of the calls
    writeLine(stderr, message(sentence));
}

void Output::error(const QString &sentence) const
{
    writeLog(sentence);
    flush();
    const QString name = QStringLiteral("velldoc:");
    QString text = message(name + QLatin1Char(' ') + sentence);
    if (terminal::hasColour(stderr))
        text.replace(0, name.size(), QStringLiteral("\x1b[31m%1\x1b[0m").arg(name));
    writeLine(stderr, text);
}

bool Output::finish(const Failure *failure)
{
    if (isJson() && !std::exchange(m_isFinished, true))
        printResult(failure);
    flush();
    return isReaderGone || std::ferror(stdout) == 0;
}

QStringList Output::possibleColumns() const
{
    const bool hasRows = m_format != Format::Text && m_format != Format::Json;
    return hasRows ? fieldsOf(m_result) : QStringList();
}

void Output::printResult(const Failure *failure) const
{
    if (m_format == Format::Json) {
        const QJsonDocument document(resultJson(m_command, m_result, failure));
        writeLine(stdout, QString::fromUtf8(document.toJson(QJsonDocument::Compact)));
        return;
    }
    if (m_result.isEmpty())
        return;
    const ResultRows rows = rowsOf(m_result, m_columns);
    if (m_format == Format::Table) {
        Table table;
        for (const QString &column : rows.columns)
            table.addColumn(column, Qt::AlignLeft, Table::Fit::Shrinks);
        for (const QStringList &row : rows.rows)
            table.addRow(row);
        const QStringList lines = table.lines(terminal::width(stdout));
        for (const QString &line : lines)
            writeLine(stdout, line);
        return;
    }
    const bool isCsv = m_format == Format::Csv;
    writeLine(stdout, rowText(rows.columns, isCsv));
    for (const QStringList &row : rows.rows)
        writeLine(stdout, rowText(row, isCsv));
}

QString Output::strong(const QString &text)
{
    return terminal::hasColour(stdout) ? QStringLiteral("\x1b[1m%1\x1b[0m").arg(text) : text;
}

} // namespace velldoc
