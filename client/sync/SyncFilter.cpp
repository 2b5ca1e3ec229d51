#include <sync/SyncFilter.h>

#include <algorithm>

namespace {

QString expressionOf(const QString &glob)
{
    QString expression;
    for (int i = 0; i < glob.size(); ++i) {
        const QChar c = glob.at(i);
        const int setEnd = c == QLatin1Char('[') ? glob.indexOf(QLatin1Char(']'), i + 2) : -1;
        if (glob.midRef(i, 3) == QLatin1String("**/")) {
            expression += QLatin1String("(?:.*/)?");
            i += 2;
        } else if (glob.midRef(i, 2) == QLatin1String("**")) {
            expression += QLatin1String(".*");
            ++i;
        } else if (c == QLatin1Char('*')) {
            expression += QLatin1String("[^/]*");
        } else if (c == QLatin1Char('?')) {
            expression += QLatin1String("[^/]");
        } else if (setEnd > 0) {
            QString set = glob.mid(i + 1, setEnd - i - 1);
            set.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
            set.replace(QLatin1Char('['), QLatin1String("\\["));
            if (set.startsWith(QLatin1Char('!')))
                set[0] = QLatin1Char('^');
            expression += QLatin1Char('[') + set + QLatin1Char(']');
            i = setEnd;
        } else {
            expression += QRegularExpression::escape(QString(c));
        }
    }
    return QRegularExpression::anchoredPattern(expression);
}

} // namespace

SyncFilter::Pattern::Pattern(QString text)
{
    if (text.startsWith(QLatin1Char('!'))) {
        isNegated = true;
        text.remove(0, 1);
    }
    if (text.endsWith(QLatin1Char('/'))) {
        isForFolders = true;
        text.chop(1);
    }
    isForPath = text.contains(QLatin1Char('/'));
    if (text.startsWith(QLatin1Char('/')))
        text.remove(0, 1);
    expression.setPattern(expressionOf(text));
    QRegularExpression::PatternOptions options = QRegularExpression::DotMatchesEverythingOption;
#ifdef Q_OS_WIN
    options |= QRegularExpression::CaseInsensitiveOption;
#endif
    expression.setPatternOptions(options);
}

bool SyncFilter::Pattern::matches(const QString &path, bool isFolder) const
{
    if (isForFolders && !isFolder)
        return false;
    return expression.match(isForPath ? path : path.section(QLatin1Char('/'), -1)).hasMatch();
}

SyncFilter::SyncFilter(const QStringList &include, const QStringList &exclude)
    : m_include(include.begin(), include.end()), m_exclude(exclude.begin(), exclude.end())
{}

bool SyncFilter::isExcluded(const QString &path, bool isFolder) const
{
    bool isExcluded = false;
    for (const Pattern &pattern : m_exclude) {
        if (isExcluded == pattern.isNegated && pattern.matches(path, isFolder))
            isExcluded = !pattern.isNegated;
    }
    return isExcluded;
}

bool SyncFilter::excludesFile(const QString &path) const
{
    const auto matches = [&path](const Pattern &pattern) { return pattern.matches(path, false); };
    return isExcluded(path, false)
        || (hasIncludes() && std::none_of(m_include.begin(), m_include.end(), matches));
}

bool SyncFilter::excludesFolder(const QString &path) const
{
    return isExcluded(path, true);
}
