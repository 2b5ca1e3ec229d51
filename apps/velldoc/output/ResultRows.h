#pragma once

#include <QJsonObject>
#include <QList>
#include <QStringList>

namespace velldoc {

//! \brief The list of a result as rows of texts.
struct ResultRows
{
    QStringList columns;
    QList<QStringList> rows;
};

//! The first list of \a result; of a list of folders the entries, each with its path. A result without a list is one row.
//! \param columns the fields that are wanted, as JSON names them; empty for those that people look for first
ResultRows rowsOf(const QJsonObject &result, const QStringList &columns);

//! One line of CSV as RFC 4180 has it, or of tab-separated values, in which tabs, line ends and backslashes are written \\t, \\n
//! and \\\\.
QString rowText(const QStringList &cells, bool isCsv);

} // namespace velldoc
