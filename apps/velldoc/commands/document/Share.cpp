#include <velldoc/commands/Commands.h>
#include <velldoc/documents/RemotePatterns.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/output/Table.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

#include <VellPublicFun/VellPub.h>

namespace velldoc {

namespace {

constexpr int UsualDays = 7;

//! Returns an invalid time for a share that does not expire.
QDateTime readEnd(const Context &context)
{
    const bool isEndless = context.isSet("forever");
    if (int(isEndless) + int(context.isSet("days")) + int(context.isSet("until")) > 1)
        throw Failure(ExitUsage, Text::tr("Use only one of --days, --until and --forever."));
    if (isEndless)
        return {};
    if (!context.isSet("until"))
        return QDateTime::currentDateTime().addDays(context.number("days", UsualDays));
    QDateTime end = QDateTime::fromString(context.value("until"), Qt::ISODate);
    if (!end.isValid()) {
        throw Failure(ExitUsage,
                      Text::tr("--until takes a date like 2026-05-31, not \"%1\".")
                          .arg(context.value("until")));
    }
    // The whole day is included.
    if (!context.value("until").contains(QLatin1Char('T')))
        end = end.addDays(1);
    return end;
}

void show(Context &context, const QString &code, const QDateTime &end)
{
    // The embedded service ends with this process: only "velldoc serve" has an address for others.
    const bool isEmbedded = context.session().isEmbedded();
    const QString path = QLatin1String("share/") + code;
    const QString address = isEmbedded ? QString() : context.session().baseApi() + path;
    context.out.setResult(
        {{QStringLiteral("code"), code},
         {QStringLiteral("address"), isEmbedded ? QJsonValue() : QJsonValue(address)},
         {QStringLiteral("allowDownload"), !context.isSet("no-download")},
         {QStringLiteral("expiresAt"),
          end.isValid() ? QJsonValue(VellPub::getQStringByDateTime(end)) : QJsonValue()}});
    context.out.print(isEmbedded ? path : address);
    if (isEmbedded) {
        context.out.note(Text::tr("Append this to the address that \"velldoc serve\" prints; the "
                                  "share is available while it runs."));
    }
    context.out.note(
        end.isValid()
            ? Text::tr("Everybody who has this address can see it until %1.").arg(timeText(end))
            : Text::tr("Everybody who has this address can see it; it does not expire."));
}

QString namesOf(const VellShare &share)
{
    QStringList names;
    for (const VellDocument &document : share.documents)
        names.append(document.name);
    return names.join(QStringLiteral(", "));
}

QJsonObject shareJson(const VellShare &share)
{
    const auto dateJson = [](const QDateTime &date) {
        return date.isValid() ? QJsonValue(VellPub::getQStringByDateTime(date)) : QJsonValue();
    };
    QJsonArray documents;
    for (const VellDocument &document : share.documents) {
        documents.append(QJsonObject{{QStringLiteral("_id"), document._id},
                                     {QStringLiteral("name"), document.name},
                                     {QStringLiteral("type"), document.type}});
    }
    return {{QStringLiteral("id"), share.id},
            {QStringLiteral("documents"), documents},
            {QStringLiteral("allowDownload"), share.isDownloadAllowed},
            {QStringLiteral("expiresAt"), dateJson(share.expiresAt)},
            {QStringLiteral("createdAt"), dateJson(share.createdAt)},
            {QStringLiteral("createdBy"), share.createdBy}};
}

void list(Context &context)
{
    context.arguments(0, 0);
    Session &session = context.session();
    const QList<VellShare> shares = session.await(session.documents().shares());
    Table table;
    table.addColumn(Text::tr("Identifier"));
    table.addColumn(Text::tr("Expires"));
    table.addColumn(Text::tr("Download"));
    table.addColumn(Text::tr("Documents"), Qt::AlignLeft, Table::Fit::Shrinks);
    QJsonArray entries;
    for (const VellShare &share : shares) {
        table.addRow({share.id,
                      share.expiresAt.isValid() ? timeText(share.expiresAt) : Text::tr("never"),
                      share.isDownloadAllowed ? Text::tr("yes") : Text::tr("no"), namesOf(share)});
        entries.append(shareJson(share));
    }
    context.out.setResult({{QStringLiteral("shares"), entries}});
    if (shares.isEmpty())
        context.out.note(Text::tr("There are no shares."));
    else
        context.out.print(table);
}

void revoke(Context &context)
{
    context.arguments(0, 0);
    QJsonArray revoked;
    const QStringList ids = context.values("revoke");
    for (const QString &id : ids) {
        if (!context.leaves(id))
            context.session().await(context.session().documents().revokeShare(id));
        revoked.append(id);
        context.out.setResult({{QStringLiteral("revoked"), revoked}});
    }
    if (!context.isDryRun())
        context.out.note(Text::tr("%n share(s) ended.", nullptr, ids.size()));
}

void run(Context &context)
{
    if (context.isSet("list")) {
        list(context);
        return;
    }
    if (context.isSet("revoke")) {
        revoke(context);
        return;
    }
    const QDateTime end = readEnd(context);
    if (end.isValid() && end <= QDateTime::currentDateTime())
        throw Failure(ExitUsage, Text::tr("The date for the share is in the past."));
    const QList<NamedDocument> documents = namedDocuments(context, context.arguments(1));
    QStringList ids;
    for (const NamedDocument &named : documents) {
        if (named.document._id.isEmpty())
            throw Failure(ExitUsage, Text::tr("Name documents or folders, not the top level."));
        if (!context.leaves(named.path.text()))
            ids.append(named.document._id);
    }
    if (context.isDryRun())
        return;
    const bool allowsDownload = !context.isSet("no-download");
    VellError error;
    const QString code =
        context.session()
            .await(context.session().documents().share(ids, end, allowsDownload), &error)
            .code;
    if (error.kind == VellError::Kind::Unclear)
        throw Failure(ExitFailed,
                      Text::tr("The service created the share, but did not return its code."));
    if (error)
        throw context.session().describe(error);
    show(context, code, end);
}

} // namespace

const Command &shareCommand()
{
    static const Command command{
        "share",
        "PATH... | --list | --revoke ID",
        QT_TRANSLATE_NOOP("velldoc", "share documents with others"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Creates a share of the documents and folders PATH and prints its "
                          "address. Everybody who has the address can see them. It is shown only "
                          "once: the service does not store it. By default the share expires after "
                          "seven days. --list lists the shares, --revoke ends one."),
        {
            {"days", "N", QT_TRANSLATE_NOOP("velldoc", "Let the share expire after N days.")},
            {"until", "DATE",
             QT_TRANSLATE_NOOP("velldoc",
                               "Let the share expire at the end of this day, such as 2026-05-31.")},
            {"forever", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Create a share that does not expire.")},
            {"no-download", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Names only; contents cannot be fetched.")},
            {"list", nullptr,
             QT_TRANSLATE_NOOP(
                 "velldoc",
                 "List your shares, and those of others if you may edit their documents.")},
            {"revoke", "ID",
             QT_TRANSLATE_NOOP("velldoc", "End the share with this identifier; may be repeated.")},
            dryRunOption(),
        },
        {{"velldoc share --days 3 /Drawings",
          QT_TRANSLATE_NOOP("velldoc", "a folder for three days")},
         {"velldoc share --list", QT_TRANSLATE_NOOP("velldoc", "list the shares")}},
        run,
    };
    return command;
}

} // namespace velldoc
