#include <velldoc/output/Table.h>

#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/Output.h>

#include <algorithm>

namespace velldoc {

namespace {

constexpr int Gap = 2;
constexpr int NarrowestColumn = 8;
constexpr int ReadableColumn = 20;
constexpr int NarrowestWhole = 4;
constexpr int NarrowestOfAll = 2;

} // namespace

void Table::addColumn(const QString &title, Qt::Alignment alignment, Fit fit)
{
    m_columns.append({title, alignment, fit});
}

void Table::addRow(const QStringList &cells)
{
    QStringList shown;
    shown.reserve(cells.size());
    for (const QString &cell : cells)
        shown.append(Output::shown(cell));
    m_rows.append(shown);
}

QStringList Table::lines(int width) const
{
    QList<int> widths = naturalWidths();
    const QList<int> shown = shownColumns(widths, width);
    if (shown.size() < m_columns.size()) {
        Table table;
        for (const int column : shown)
            table.m_columns.append(m_columns.at(column));
        for (const QStringList &row : m_rows) {
            QStringList cells;
            for (const int column : shown)
                cells.append(row.value(column));
            table.m_rows.append(cells);
        }
        return table.lines(width);
    }
    widths = fittedWidths(widths, width);
    QStringList titles;
    for (const Column &column : m_columns)
        titles.append(column.title);
    QStringList result{line(titles, widths)};
    result.reserve(m_rows.size() + 1);
    for (const QStringList &row : m_rows)
        result.append(linesOf(row, widths));
    return result;
}

QStringList Table::linesOf(const QStringList &row, const QList<int> &widths) const
{
    const int last = m_columns.size() - 1;
    if (m_columns.at(last).fit != Fit::Wraps)
        return {line(row, widths)};
    QStringList cells = row;
    QStringList lines;
    const QStringList parts = wrapped(row.value(last), widths.at(last));
    for (const QString &part : parts) {
        cells[last] = part;
        lines.append(line(cells, widths));
        for (QString &cell : cells)
            cell.clear();
    }
    return lines;
}

QList<int> Table::naturalWidths() const
{
    QList<int> widths;
    for (int i = 0; i < m_columns.size(); ++i) {
        int widest = displayWidth(m_columns.at(i).title);
        for (const QStringList &row : m_rows)
            widest = qMax(widest, displayWidth(row.value(i)));
        widths.append(widest);
    }
    return widths;
}

QList<int> Table::shownColumns(const QList<int> &widths, int width) const
{
    QList<int> shown;
    int least = -Gap; // of all columns, with shrinkable columns at their least readable width
    for (int i = 0; i < m_columns.size(); ++i) {
        const Fit fit = m_columns.at(i).fit;
        const bool shrinks = fit == Fit::Shrinks || fit == Fit::Wraps;
        least += Gap + (shrinks ? qMin(widths.at(i), ReadableColumn) : widths.at(i));
        shown.append(i);
    }
    const auto drop = [&](auto mayDrop) {
        for (int i = m_columns.size() - 1; width > 0 && i >= 0 && least > width; --i) {
            if (mayDrop(i) && shown.removeOne(i))
                least -= Gap + widths.at(i);
        }
    };
    drop([this](int column) { return isEmpty(column); });
    drop([this](int column) { return m_columns.at(column).fit == Fit::Drops; });
    return shown;
}

bool Table::isEmpty(int column) const
{
    return std::all_of(m_rows.cbegin(), m_rows.cend(),
                       [column](const QStringList &row) { return row.value(column).isEmpty(); });
}

QList<int> Table::fittedWidths(QList<int> widths, int width) const
{
    if (width <= 0)
        return widths;
    int total = -Gap;
    for (const int column : qAsConst(widths))
        total += column + Gap;
    int excess = narrow(widths, total - width, Fit::Wraps, NarrowestColumn);
    excess = narrow(widths, excess, Fit::Shrinks, NarrowestColumn);
    // Only for very narrow terminals.
    excess = narrow(widths, excess, Fit::Whole, NarrowestWhole);
    narrow(widths, excess, Fit::Shrinks, NarrowestOfAll);
    return widths;
}

int Table::narrow(QList<int> &widths, int excess, Fit fit, int least) const
{
    for (; excess > 0; --excess) {
        int widest = -1;
        for (int i = 0; i < widths.size(); ++i) {
            const bool canShrink = m_columns.at(i).fit == fit && widths.at(i) > least;
            if (canShrink && (widest < 0 || widths.at(i) > widths.at(widest)))
                widest = i;
        }
        if (widest < 0)
            break;
        --widths[widest];
    }
    return excess;
}

QString Table::line(const QStringList &cells, const QList<int> &widths) const
{
    QString text;
    for (int i = 0; i < m_columns.size(); ++i) {
        if (i > 0)
            text += QString(Gap, QLatin1Char(' '));
        text +=
            padded(elided(cells.value(i), widths.at(i)), widths.at(i), m_columns.at(i).alignment);
    }
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

} // namespace velldoc
