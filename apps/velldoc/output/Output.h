#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace velldoc {

class Failure;
class Table;

//! \brief The output for the user: results on the standard output, messages on the
//! standard error.
//!
//! With --json and --output, texts and tables are not printed; finish() prints the result as one JSON document, or its list as
//! rows.
class Output
{
public:
    enum class Format { Text, Json, Csv, Tsv, Table };

    //! Returns true if finish() prints the result.
    bool isJson() const { return m_format != Format::Text; }
    void setFormat(Format format) { m_format = format; }
    //! Sets the fields of rows by their JSON names. If empty, the most important fields are printed.
    void setColumns(const QStringList &columns) { m_columns = columns; }
    QStringList columns() const { return m_columns; }
    //! Returns the names that the columns of the result may have; empty if finish() prints no rows.
    QStringList possibleColumns() const;
    //! Sets whether names end with NUL instead of a newline.
    void setNulEnds(bool hasNulEnds) { m_hasNulEnds = hasNulEnds; }
    bool hasNulEnds() const { return m_hasNulEnds; }

    void setCommand(const QString &name) { m_command = name; }

    void print(const QString &line) const;
    void print(const Table &table) const;
    //! Prints a name or a path: unchanged unless the standard output is a terminal.
    void printName(const QString &name) const;

    //! Returns \a text for the standard output: without control characters if it is a terminal.
    static QString shown(const QString &text);

    //! Flushes the output, before work that takes long.
    void flush() const;

    //! Notes that the reader of the standard output has closed it, as "head" does: this is not an error.
    static void noteReaderGone();

    //! Sets the "result" of the JSON document.
    void setResult(const QJsonObject &result) { m_result = result; }

    //! Prints a message for the user to the standard error; not with JSON.
    void note(const QString &sentence) const;

    //! Prints the sentence of a failure.
    void error(const QString &sentence) const;

    //! Prints the result, with \a failure if it is not null. Further calls have no effect.
    //! \return true if everything could be written
    bool finish(const Failure *failure);

    //! Returns \a text in bold, or unchanged if the output has no colours.
    static QString strong(const QString &text);

private:
    void printResult(const Failure *failure) const;

    Format m_format = Format::Text;
    QStringList m_columns;
    bool m_hasNulEnds = false;
    QString m_command;
    QJsonObject m_result;
    bool m_isFinished = false;
};

} // namespace velldoc
