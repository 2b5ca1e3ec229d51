#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace velldoc {

class Failure;
class Table;

//! \brief Where everything that the user reads goes: results to the standard output, the rest to the
//! standard error.
//!
//! For programs, texts and tables are left out, and finish() prints the result: one JSON document, or its list as rows.
class Output
{
public:
    enum class Format { Text, Json, Csv, Tsv, Table };

    //! Whether the result is printed by finish().
    bool isJson() const { return m_format != Format::Text; }
    void setFormat(Format format) { m_format = format; }
    //! The fields of rows, as JSON names them; those that people look for first when empty.
    void setColumns(const QStringList &columns) { m_columns = columns; }
    //! Names end with NUL instead of a line's end.
    void setNulEnds(bool hasNulEnds) { m_hasNulEnds = hasNulEnds; }
    bool hasNulEnds() const { return m_hasNulEnds; }

    void setCommand(const QString &name) { m_command = name; }

    void print(const QString &line) const;
    void print(const Table &table) const;
    //! A name or a path of the user's: as it is, unless a terminal shows it.
    void printName(const QString &name) const;

    //! \a text as the standard output takes it: without what would steer a terminal if it is one.
    static QString shown(const QString &text);

    //! Hands over what has been printed so far, before something that takes long.
    void flush() const;

    //! What JSON's "result" will hold.
    void setResult(const QJsonObject &result) { m_result = result; }

    //! A sentence for the user beside the result, on the standard error; not with JSON.
    void note(const QString &sentence) const;

    //! One sentence: what went wrong and what to do.
    void error(const QString &sentence) const;

    //! Prints the JSON document, with \a failure when there is one; only the first call does.
    //! \return whether everything could be written
    bool finish(const Failure *failure);

    //! \a text in bold, or as it is where colour does not belong.
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
