#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace velldoc {

//! \brief A table that is fitted to a width.
//!
//! Columns are separated by two spaces. If the cells are too wide, columns without any text are dropped, then those that may be
//! dropped, the last one first; then the widest of the columns that may shrink is cut, down to a least width, and then
//! the other columns. Without a width nothing is cut. A last column that wraps goes on in
//! more lines; of it, only words that are longer than a line are cut.
class Table
{
public:
    enum class Fit { Whole, Shrinks, Drops, Wraps };

    void addColumn(const QString &title, Qt::Alignment alignment = Qt::AlignLeft,
                   Fit fit = Fit::Whole);

    //! Adds a row with a cell for each column. For a terminal, control characters are replaced.
    void addRow(const QStringList &cells);

    //! Returns the lines, beginning with the titles, without spaces at their ends.
    //! \param width the number of columns of the terminal; 0 for no limit
    QStringList lines(int width) const;

private:
    struct Column
    {
        QString title;
        Qt::Alignment alignment;
        Fit fit;
    };

    bool isEmpty(int column) const;
    //! Returns the columns that are not dropped.
    QList<int> shownColumns(const QList<int> &widths, int width) const;
    QList<int> naturalWidths() const;
    QList<int> fittedWidths(QList<int> widths, int width) const;
    //! Narrows the columns of one kind by \a excess in total, each to at least \a least. \return the remaining excess
    int narrow(QList<int> &widths, int excess, Fit fit, int least) const;
    QString line(const QStringList &cells, const QList<int> &widths) const;
    QStringList linesOf(const QStringList &row, const QList<int> &widths) const;

    QList<Column> m_columns;
    QList<QStringList> m_rows;
};

} // namespace velldoc
