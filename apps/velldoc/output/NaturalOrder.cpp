#include <velldoc/output/NaturalOrder.h>

namespace velldoc {

namespace {

bool isDigit(const QString &text, int at)
{
    return at < text.size() && text.at(at) >= QLatin1Char('0') && text.at(at) <= QLatin1Char('9');
}

//! Returns the digits from \a at on, without leading zeros, and moves \a at after them.
QString takeNumber(const QString &text, int &at)
{
    while (isDigit(text, at) && text.at(at) == QLatin1Char('0'))
        ++at;
    const int start = at;
    while (isDigit(text, at))
        ++at;
    return text.mid(start, at - start);
}

int compareNumbers(const QString &a, const QString &b)
{
    return a.size() == b.size() ? a.compare(b) : a.size() - b.size();
}

} // namespace

int compareNaturally(const QString &a, const QString &b)
{
    int i = 0;
    int j = 0;
    while (i < a.size() && j < b.size()) {
        int order = 0;
        if (isDigit(a, i) && isDigit(b, j)) {
            const QString number = takeNumber(a, i);
            order = compareNumbers(number, takeNumber(b, j));
        } else {
            order = a.at(i++).toCaseFolded().unicode() - b.at(j++).toCaseFolded().unicode();
        }
        if (order != 0)
            return order;
    }
    const int rest = (a.size() - i) - (b.size() - j);
    return rest != 0 ? rest : a.compare(b);
}

} // namespace velldoc
