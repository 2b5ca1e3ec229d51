#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace velldoc {

//! \brief Rows of columns that fit a width.
//!
//! Columns stand two blanks apart. When the widest cells do not fit, the columns that may shrink are cut, the
//! widest first, down to a width that still says something, and only then the others; before that the columns that may be dropped
//! go, the first of them last. Without a width nothing is cut.
class Table
{
public:
    enum class Fit { Whole, Shrinks, Drops };

    void addColumn(const QString &title, Qt::Alignment alignment = Qt::AlignLeft,
                   Fit fit = Fit::Whole);

    //! One cell for each column; characters that would steer a terminal are replaced when one shows them.
    void addRow(const QStringList &cells);

    //! The lines, titles first, without blanks at their ends.
    //! \param width columns of the terminal, 0 for no limit
    QStringList lines(int width) const;

private:
    struct Column
    {
        QString title;
        Qt::Alignment alignment;
        Fit fit;
    };

    //! The columns that are shown.
    QList<int> shownColumns(const QList<int> &widths, int width) const;
    QList<int> naturalWidths() const;
    QList<int> fittedWidths(QList<int> widths, int width) const;
    //! Takes \a excess from the columns of one kind, none narrower than \a least. \return what is left to take
    int narrow(QList<int> &widths, int excess, Fit fit, int least) const;
    QString line(const QStringList &cells, const QList<int> &widths) const;

    QList<Column> m_columns;
    QList<QStringList> m_rows;
};

} // namespace velldoc
