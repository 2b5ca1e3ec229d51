#pragma once

#include <QJsonObject>
#include <QList>
#include <QStringList>

namespace velldoc {

//! \brief The list of a result as rows of text.
struct ResultRows
{
    QStringList columns;
    QList<QStringList> rows;
};

//! Returns the first list of \a result; for a list of folders their entries, each with its path. A result without a list is one
//! row.
//! \param columns the JSON names of the fields; empty for the most important ones
ResultRows rowsOf(const QJsonObject &result, const QStringList &columns);

//! Returns the names of all fields that the rows of \a result have, or may have; empty if there are no rows.
QStringList fieldsOf(const QJsonObject &result);

//! Returns a line of CSV (RFC 4180), or of tab-separated values, in which tabs, newlines and backslashes are written as \\t, \\n
//! and \\\\.
QString rowText(const QStringList &cells, bool isCsv);

} // namespace velldoc
