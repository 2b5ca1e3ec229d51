#include <velldoc/commands/Commands.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/sync/SyncReport.h>
#include <velldoc/transfer/LocalFilter.h>

#include <QFileInfo>

namespace velldoc {

namespace {

using Reason = VellSyncStep::Reason;

//! Returns how the two entries of \a step differ; an empty string if they are equal.
QString differenceOf(const VellSyncStep &step)
{
    switch (step.reason) {
    case Reason::New:
        return QStringLiteral("local-only");
    case Reason::NotInSource:
        return QStringLiteral("remote-only");
    case Reason::OtherSize:
        return QStringLiteral("size");
    case Reason::OtherContent:
        return QStringLiteral("content");
    default: // times are not compared
        return {};
    }
}

VellSyncPlan compare(Context &context, const QString &local, const QString &remote)
{
    if (!QFileInfo(local).isDir())
        throw Failure(ExitNotFound, Text::tr("There is no local folder %1.").arg(local));
    VellSyncOptions options = FilterOptions(context).syncOptions();
    if (!context.isSet("size-only"))
        options.comparison = VellSyncOptions::Comparison::Content;
    const VellDocument folder = context.tree().findFolder(RemotePath::parse(remote));
    Session &session = context.session();
    return session.await(
        VellSyncPlan::make(session.documents().session(), local, folder._id, options));
}

void run(Context &context)
{
    const QStringList arguments = context.arguments(2, 2);
    const VellSyncPlan plan = compare(context, arguments.constFirst(), arguments.constLast());
    QJsonArray differences;
    for (const VellSyncStep &step : plan.steps) {
        const QString difference = differenceOf(step);
        if (difference.isEmpty())
            continue;
        context.out.printName(difference.leftJustified(12) + step.path
                              + QLatin1String(step.isFolder ? "/" : ""));
        differences.append(QJsonObject{{QStringLiteral("path"), step.path},
                                       {QStringLiteral("reason"), difference}});
    }
    SyncReport report(context, plan.options.direction);
    report.addProblems(plan);
    report.printFailures();
    context.out.setResult(
        {{QStringLiteral("differences"), differences},
         {QStringLiteral("isEqual"), differences.isEmpty() && report.failureCount() == 0}});
    if (report.failureCount() > 0)
        throw Failure(
            ExitFailed,
            Text::tr("%n file(s) could not be compared.", nullptr, report.failureCount()));
    if (!differences.isEmpty())
        throw Failure(ExitDifferent,
                      Text::tr("The folders have %n difference(s).", nullptr, differences.size()));
    context.out.note(
        Text::tr("The folders are equal: %n file(s) and folder(s).", nullptr, plan.steps.size()));
}

} // namespace

const Command &checkCommand()
{
    static const Command command{
        "check",
        "LOCAL PATH",
        QT_TRANSLATE_NOOP("velldoc", "compare a local folder with a folder of the project"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Compares the contents of all files in the local folder LOCAL and the folder PATH, and "
            "lists entries that are only on one side or differ. Nothing is transferred. The exit "
            "code is 0 if the folders are equal, 6 if they differ."),
        QVector<CommandOption>{
            {"size-only", nullptr,
             QT_TRANSLATE_NOOP("velldoc", "Compare sizes only, without reading the files.")}}
            + filterOptions()
            + QVector<CommandOption>{{"links", "WHAT",
                                      QT_TRANSLATE_NOOP(
                                          "velldoc",
                                          "Links in folders: refuse (report them) or skip."),
                                      "refuse skip"}},
        {{"velldoc check site /Site && rm -r site",
          QT_TRANSLATE_NOOP("velldoc", "remove a folder only after all of it has been stored")}},
        run,
    };
    return command;
}

} // namespace velldoc
