#include <service/storage/RegexFunction.h>

#include <QElapsedTimer>

#include <memory>
#include <sqlite3.h>

namespace service {

namespace {

// Enough for any name of 255 bytes; an expression that backtracks endlessly exceeds it in milliseconds.
constexpr int MatchLimit = 100000;
constexpr int DepthLimit = 10000;
constexpr qint64 StatementLimitMs = 3000;

struct CompiledExpression
{
    QRegularExpression expression;
    QElapsedTimer age;
};

QString argumentText(sqlite3_value *value)
{
    const auto *text = static_cast<const QChar *>(sqlite3_value_text16(value));
    return QString(text, sqlite3_value_bytes16(value) / static_cast<int>(sizeof(QChar)));
}

//! Compiled once for each statement: SQLite stores it with the constant first argument.
CompiledExpression *compiled(sqlite3_context *context, sqlite3_value **arguments)
{
    auto *kept = static_cast<CompiledExpression *>(sqlite3_get_auxdata(context, 0));
    if (kept != nullptr)
        return kept;
    auto fresh = std::make_unique<CompiledExpression>();
    fresh->expression = boundedExpression(argumentText(arguments[0]), argumentText(arguments[1]));
    fresh->age.start();
    CompiledExpression *const result = fresh.release();
    sqlite3_set_auxdata(context, 0, result,
                        [](void *data) { delete static_cast<CompiledExpression *>(data); });
    return result;
}

void fail(sqlite3_context *context)
{
    const QByteArray message = regexLimitMessage().toUtf8();
    sqlite3_result_error(context, message.constData(), message.size());
}

void nameMatches(sqlite3_context *context, int, sqlite3_value **arguments)
{
    const CompiledExpression *const regex = compiled(context, arguments);
    if (regex->age.hasExpired(StatementLimitMs)) {
        fail(context);
        return;
    }
    const QRegularExpressionMatch match = regex->expression.match(argumentText(arguments[2]));
    if (match.isValid())
        sqlite3_result_int(context, match.hasMatch() ? 1 : 0);
    else
        fail(context);
}

} // namespace

void registerRegexFunction(sqlite3 *connection)
{
    sqlite3_create_function_v2(connection, "name_matches", 3, SQLITE_UTF16 | SQLITE_DETERMINISTIC,
                               nullptr, nameMatches, nullptr, nullptr, nullptr);
}

QRegularExpression boundedExpression(const QString &pattern, const QString &options)
{
    QRegularExpression::PatternOptions flags = QRegularExpression::NoPatternOption;
    flags.setFlag(QRegularExpression::CaseInsensitiveOption, options.contains(QLatin1Char('i')));
    flags.setFlag(QRegularExpression::MultilineOption, options.contains(QLatin1Char('m')));
    flags.setFlag(QRegularExpression::DotMatchesEverythingOption,
                  options.contains(QLatin1Char('s')));
    flags.setFlag(QRegularExpression::ExtendedPatternSyntaxOption,
                  options.contains(QLatin1Char('x')));
    // A pattern with limits of its own can only lower these.
    return QRegularExpression(
        QStringLiteral("(*LIMIT_MATCH=%1)(*LIMIT_DEPTH=%2)").arg(MatchLimit).arg(DepthLimit)
            + pattern,
        flags);
}

QString regexLimitMessage()
{
    return QStringLiteral("The regular expression takes too long; use a simpler one.");
}

} // namespace service
