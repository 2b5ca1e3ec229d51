#include <document_service/VellDocumentData.h>
#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>

#include <VellPublicFun/VellPub.h>

namespace velldoc {

namespace {

constexpr int UsualDays = 7;

//! Invalid for a share that does not end.
QDateTime readEnd(const Context &context)
{
    const bool isEndless = context.isSet("forever");
    if (int(isEndless) + int(context.isSet("days")) + int(context.isSet("until")) > 1)
        throw Failure(ExitUsage, Text::tr("Pass one of --days, --until and --forever."));
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
    // A day counts in full.
    if (!context.value("until").contains(QLatin1Char('T')))
        end = end.addDays(1);
    return end;
}

void show(Context &context, const QString &code, const QDateTime &end)
{
    // A service inside this process ends with it: only "velldoc serve" has an address for others.
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
        context.out.note(Text::tr("The full address is what \"velldoc serve\" prints, with this "
                                  "behind it; it works while that runs."));
    }
    context.out.note(
        end.isValid()
            ? Text::tr("Whoever has this address can look at it until %1.").arg(timeText(end))
            : Text::tr("Whoever has this address can look at it, for ever."));
}

void run(Context &context)
{
    const QDateTime end = readEnd(context);
    if (end.isValid() && end <= QDateTime::currentDateTime())
        throw Failure(ExitUsage, Text::tr("The share would have ended already."));
    const QStringList paths = context.arguments(1, 0);
    QStringList ids;
    for (const QString &path : paths) {
        const VellDocument document = context.tree().find(RemotePath::parse(path));
        if (document._id.isEmpty())
            throw Failure(ExitUsage, Text::tr("Name documents or folders, not the top level."));
        ids.append(document._id);
    }
    const bool allowsDownload = !context.isSet("no-download");
    QString code;
    context.session().change([&] {
        return VellDocumentData::instance()->shareDocument(ids, end, code, allowsDownload);
    });
    if (code.isEmpty())
        throw Failure(ExitFailed, Text::tr("The service made the share, but gave no code for it."));
    show(context, code, end);
}

} // namespace

const Command &shareCommand()
{
    static const Command command{
        "share",
        "PATH...",
        QT_TRANSLATE_NOOP("velldoc", "give others an address to look at documents"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Prints an address at which everybody who has it can see the documents and folders "
            "PATH. It is shown "
            "once: the service keeps no copy. Without an option it works for seven days."),
        {
            {"days", "N", QT_TRANSLATE_NOOP("velldoc", "Ends after N days.")},
            {"until", "DATE",
             QT_TRANSLATE_NOOP("velldoc", "Ends with this day, such as 2026-05-31.")},
            {"forever", nullptr, QT_TRANSLATE_NOOP("velldoc", "Does not end.")},
            {"no-download", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Names only; contents cannot be fetched.")},
        },
        {{"velldoc share --days 3 /Drawings",
          QT_TRANSLATE_NOOP("velldoc", "a folder for three days")}},
        run,
    };
    return command;
}

} // namespace velldoc
