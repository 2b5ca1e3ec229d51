#include <document_model/DocumentConstants.h>
#include <file_types/FileTypes.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/documents/FolderPaths.h>
#include <velldoc/documents/Listing.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

#include <QRegularExpression>

#include <limits>
#include <optional>

namespace velldoc {

namespace {

QDateTime readTime(const Context &context, const char *option)
{
    QDateTime time = timeFromText(context.value(option));
    if (!time.isValid()) {
        throw Failure(
            ExitUsage,
            Text::tr("--%1 takes a date like 2026-05-31 or a time ago like 12h, 3d or 2w, "
                     "not \"%2\".")
                .arg(QString::fromLatin1(option), context.value(option)));
    }
    return time;
}

void readSpan(const Context &context, VellDocumentConditon &condition)
{
    if (!context.isSet("from") && !context.isSet("to"))
        return;
    condition.isAllTime = false;
    condition.startTime =
        context.isSet("from") ? readTime(context, "from") : QDateTime::fromSecsSinceEpoch(0);
    condition.endTime =
        context.isSet("to") ? readTime(context, "to") : QDateTime::currentDateTime();
}

//! Parses a condition for sizes: "+10M" at least, "-10K" at most, "5M" exactly.
struct SizeSpan
{
    qint64 least = 0;
    qint64 most = std::numeric_limits<qint64>::max();

    bool isAll() const { return least == 0 && most == std::numeric_limits<qint64>::max(); }
};

SizeSpan readSizes(const Context &context)
{
    SizeSpan span;
    const QStringList texts = context.values("size");
    for (const QString &text : texts) {
        const bool isSigned =
            text.startsWith(QLatin1Char('+')) || text.startsWith(QLatin1Char('-'));
        const std::optional<qint64> bytes = bytesFromText(text.mid(isSigned ? 1 : 0));
        if (!bytes)
            throw Failure(
                ExitUsage,
                Text::tr("--size takes +10M (at least), -10K (at most) or 5M, not \"%1\".")
                    .arg(text));
        if (!text.startsWith(QLatin1Char('-')))
            span.least = qMax(span.least, *bytes);
        if (!text.startsWith(QLatin1Char('+')))
            span.most = qMin(span.most, *bytes);
    }
    return span;
}

VellDocumentConditon readCondition(Context &context, const QString &pattern)
{
    VellDocumentConditon condition;
    const bool isEverything = pattern.isEmpty() || pattern == QLatin1String("*");
    if (context.isSet("regex"))
        condition.searchName = pattern;
    else if (!isEverything)
        condition.searchName = QRegularExpression::wildcardToRegularExpression(pattern);
    condition.type = context.word("type");
    condition.category = context.value("category");
    for (const QString &user : context.values("by"))
        condition.userIds += context.session().userIdsOf(user);
    condition.isAllUser = condition.userIds.isEmpty();
    condition.isDeep = true;
    readSpan(context, condition);
    return condition;
}

bool hasKind(const VellDocument &document, const QString &kind)
{
    return kind.isEmpty()
        || (document.type == QLatin1String("file")
            && VellPubDoc::getFileType(document.suffix) == kind);
}

//! Returns how to find names that contain \a pattern; empty if that is what was searched for.
QString patternAdvice(const Context &context, const QString &pattern)
{
    static const QRegularExpression wildcard(QStringLiteral("[*?\\[]"));
    if (pattern.isEmpty() || context.isSet("regex") || pattern.contains(wildcard))
        return {};
    return Text::tr("The whole name must match: \"*%1*\" finds names that contain it.")
        .arg(pattern);
}

void run(Context &context)
{
    QStringList arguments = context.arguments(0, 2);
    // Names have no slash: "find --kind image /site" searches the folder.
    if (arguments.size() == 1 && !context.isSet("regex")
        && (arguments.constFirst().contains(QLatin1Char('/'))
            || arguments.constFirst().startsWith(QLatin1String("id:"))))
        arguments.prepend(QString());
    VellDocumentConditon condition = readCondition(context, arguments.value(0));
    const QString kind = context.word("kind");
    const SizeSpan sizes = readSizes(context);
    const RemotePath path = RemotePath::parse(arguments.value(1, QStringLiteral("/")));
    condition.parentId = context.tree().findFolder(path)._id;
    VellDocumentSort sort;
    sort.isDefault = false;
    sort.sortField = KEY_UPDATED_AT;
    const QList<VellDocument> all = context.tree().list(condition, sort);
    QList<VellDocument> found;
    for (const VellDocument &document : all) {
        const bool fits = sizes.isAll()
            || (!isFolder(document) && document.fileSize >= sizes.least
                && document.fileSize <= sizes.most);
        if (fits && hasKind(document, kind))
            found.append(document);
    }
    showDocuments(context, found, QStringLiteral("documents"), FolderPaths(context.session()));
    if (found.isEmpty())
        context.out.note(joinedSentences(
            {Text::tr("Nothing was found."), patternAdvice(context, arguments.value(0))}));
}

} // namespace

const Command &searchCommand()
{
    static const Command command{
        "find",
        "[PATTERN [PATH]]",
        QT_TRANSLATE_NOOP("velldoc", "search by name, time, user and kind"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Lists all documents below PATH whose name matches PATTERN, the last changed first. In "
            "a pattern * matches any text, ? one character and [abc] one of these characters; case "
            "is ignored. A single argument with a slash is PATH."),
        {
            {"regex", nullptr,
             QT_TRANSLATE_NOOP(
                 "velldoc",
                 "Use PATTERN as a regular expression that matches a part of the name.")},
            {"from", "TIME",
             QT_TRANSLATE_NOOP(
                 "velldoc",
                 "Find documents changed since 2026-05-31, or in the last 12h, 3d or 2w.")},
            {"to", "TIME",
             QT_TRANSLATE_NOOP("velldoc", "Find documents changed until the end of this day.")},
            {"by", "USER",
             QT_TRANSLATE_NOOP("velldoc",
                               "Find documents that were last changed by the user with this "
                               "identifier, or by you if it is your name; may be repeated.")},
            {"type", "TYPE", QT_TRANSLATE_NOOP("velldoc", "file or dir."), "file dir"},
            {"kind", "KIND", QT_TRANSLATE_NOOP("velldoc", "image, office, dwg, video or other."),
             "image office dwg video other"},
            {"size", "SIZE",
             QT_TRANSLATE_NOOP("velldoc",
                               "Find files of at least (+10M), at most (-10K) or exactly this "
                               "size; may be repeated.")},
            {"category", "WORD", QT_TRANSLATE_NOOP("velldoc", "The category.")},
            {"l,long", nullptr,
             QT_TRANSLATE_NOOP("velldoc",
                               "Print a table with size, time and user of the last change.")},
        },
        {
            {"velldoc find '*.dwg' /Drawings",
             QT_TRANSLATE_NOOP("velldoc", "every drawing below a folder")},
            {"velldoc find --from 3d --kind image",
             QT_TRANSLATE_NOOP("velldoc", "pictures of the last three days")},
        },
        run,
    };
    return command;
}

} // namespace velldoc
