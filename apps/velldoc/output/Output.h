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
//! With JSON, texts and tables are left out and the one document is printed by finish().
class Output
{
public:
    bool isJson() const { return m_isJson; }
    void setJson(bool isJson) { m_isJson = isJson; }
    void setCommand(const QString &name) { m_command = name; }

    void print(const QString &line) const;
    void print(const Table &table) const;

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
    bool m_isJson = false;
    QString m_command;
    QJsonObject m_result;
    bool m_isFinished = false;
};

} // namespace velldoc
