#include <velldoc/program/Usage.h>

#include <velldoc/program/Command.h>
#include <velldoc/program/Text.h>

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace velldoc {

namespace {

//! Returns how many letters must be inserted, removed, replaced or swapped with the next one.
int distance(const QString &a, const QString &b)
{
    QVector<QVector<int>> rows(a.size() + 1, QVector<int>(b.size() + 1));
    for (int i = 0; i <= a.size(); ++i) {
        for (int j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                rows[i][j] = i + j;
                continue;
            }
            const int change = a.at(i - 1) == b.at(j - 1) ? 0 : 1;
            rows[i][j] =
                std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, rows[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1))
                rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
        }
    }
    return rows[a.size()][b.size()];
}

} // namespace

QList<UsageWord> usageWords(const Command &command, const QString &action)
{
    static const QRegularExpression argument(QStringLiteral("(?<![-\\w])([A-Z]{2,})(\\.\\.\\.)?"));
    static const QRegularExpression option(QStringLiteral("\\[?--[a-z-]+ [A-Z:]+\\]?"));
    static const QRegularExpression outer(QStringLiteral("^\\[|\\]$"));
    const QStringList forms = QString::fromLatin1(command.arguments).split(QStringLiteral(" | "));
    QString text = forms.constFirst();
    for (const QString &form : forms) {
        const QString plain = QString(form).remove(outer);
        if (!action.isEmpty() && plain.section(QLatin1Char(' '), 0, 0) == action)
            text = plain;
    }
    text.remove(option);
    QList<UsageWord> words;
    for (auto it = argument.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        words.append({match.captured(1), !match.captured(2).isEmpty()});
    }
    return words;
}

QString usageLine(const Command &command)
{
    return QStringLiteral("velldoc %1 %2")
        .arg(QString::fromLatin1(command.name), QString::fromLatin1(command.arguments))
        .trimmed();
}

QString mostAlike(const QString &word, const QStringList &words)
{
    QString best;
    int least = word.size() < 4 ? 2 : 3; // with more changes it would be another word
    for (const QString &candidate : words) {
        const bool isClose = candidate.startsWith(word)
            || (candidate != word && candidate.compare(word, Qt::CaseInsensitive) == 0);
        const int letters = isClose ? 1 : distance(word, candidate);
        if (letters < least && letters < candidate.size()) {
            least = letters;
            best = candidate;
        }
    }
    return best;
}

QString didYouMean(const QString &like)
{
    return like.isEmpty() ? QString() : Text::tr("Did you mean %1?").arg(like);
}

} // namespace velldoc
