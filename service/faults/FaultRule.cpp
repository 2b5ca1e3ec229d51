#include <service/faults/FaultRule.h>

#include <QStringList>

#include <array>

namespace {

struct KindRow
{
    const char *word;
    FaultRule::Kind kind;
    bool hasValue;
    const char *help;
};

constexpr std::array<KindRow, 8> Kinds{{
    {"lose-reply", FaultRule::Kind::LoseReply, false,
     "process the request, then close without a response"},
    {"drop-after", FaultRule::Kind::DropAfter, true,
     "=BYTES  close after so many bytes of the body"},
    {"status", FaultRule::Kind::Status, true, "=CODE  respond with this status only"},
    {"stall", FaultRule::Kind::Stall, false, "[=MS]  do not respond"},
    {"slow", FaultRule::Kind::Slow, true, "=MS  delay the response"},
    {"cut-reply", FaultRule::Kind::CutReply, true,
     "=BYTES  close after so many bytes of the response"},
    {"forget-chunk", FaultRule::Kind::ForgetChunk, false, "do not store the chunk, and say so"},
    {"no-room", FaultRule::Kind::NoRoom, false, "respond with 507, as on a full disk"},
}};

bool parseKind(const QString &word, const QString &value, FaultRule *rule)
{
    for (const KindRow &row : Kinds) {
        if (word != QLatin1String(row.word))
            continue;
        rule->kind = row.kind;
        if (value.isEmpty())
            return !row.hasValue;
        bool isNumber = false;
        rule->value = value.toLongLong(&isNumber);
        return isNumber && rule->value >= 0 && (row.hasValue || row.kind == FaultRule::Kind::Stall);
    }
    return false;
}

bool parseFilter(const QString &word, const QString &value, FaultRule *rule)
{
    bool isRight = !value.isEmpty();
    if (word == QLatin1String("verb"))
        rule->verb = value.toUpper().toLatin1();
    else if (word == QLatin1String("path"))
        rule->pathPrefix = value.startsWith(QLatin1Char('/')) ? value : QLatin1Char('/') + value;
    else if (word == QLatin1String("nth"))
        rule->nth = value.toInt(&isRight);
    else if (word == QLatin1String("times"))
        rule->times = value.toInt(&isRight);
    else
        return false;
    return isRight && rule->nth >= 1 && rule->times >= 0;
}

} // namespace

bool FaultRule::parse(const QString &specification, FaultRule *rule, QString *error)
{
    *rule = FaultRule();
    const QStringList pieces = specification.split(QLatin1Char(','));
    for (int i = 0; i < pieces.size(); ++i) {
        const QString word = pieces.at(i).section(QLatin1Char('='), 0, 0).trimmed();
        const QString value = pieces.at(i).section(QLatin1Char('='), 1).trimmed();
        const bool isRight = i == 0 ? parseKind(word, value, rule) : parseFilter(word, value, rule);
        if (!isRight) {
            *error = QStringLiteral("The fault \"%1\" cannot be read at \"%2\".")
                         .arg(specification, pieces.at(i));
            return false;
        }
    }
    if (rule->kind == Kind::Status && (rule->value < 400 || rule->value > 599)) {
        *error = QStringLiteral("A fault's status is between 400 and 599.");
        return false;
    }
    return true;
}

QString FaultRule::syntax()
{
    QString text = QStringLiteral(
        "A fault is KIND[=VALUE][,verb=METHOD][,path=PREFIX][,nth=N][,times=M]: the Nth request\n"
        "(from 1) with that method whose path begins so is affected, and M in all (1; 0: all).\n"
        "Example: status=503,verb=POST,path=/base-service/largefiles,times=2\n");
    for (const KindRow &row : Kinds) {
        text += QStringLiteral("  %1%2\n")
                    .arg(QString::fromLatin1(row.word), -13)
                    .arg(QString::fromLatin1(row.help));
    }
    return text;
}
