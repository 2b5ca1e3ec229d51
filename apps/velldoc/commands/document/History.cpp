#include <velldoc/commands/Commands.h>
#include <velldoc/documents/Versions.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/Json.h>
#include <velldoc/output/Question.h>
#include <velldoc/output/Table.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

//! Histories contain only sizes up to 2 GiB; the document has that of the newest version.
QString sizeCellOf(const VellDocument &version)
{
    return version.fileSize > 0 ? sizeText(version.fileSize) : Text::tr("0 B or more than 2 GiB");
}

//! Makes a new version with the content of an earlier one.
void makeCurrent(Context &context, const VellDocument &document, const RemotePath &path)
{
    const VellDocument version =
        versionOf(context.session(), document, context.number("make-current", 0));
    if (context.leaves(path.text()))
        return;
    Session &session = context.session();
    const VellDocument now =
        session.await(session.documents().makeCurrent(document._id, version.fileId));
    context.out.setResult({{QStringLiteral("document"), documentJson(now, path.text())}});
}

void deleteVersion(Context &context, const VellDocument &document, const RemotePath &path)
{
    const int number = context.number("delete", 0);
    const VellDocument version = versionOf(context.session(), document, number);
    if (context.leaves(path.text()))
        return;
    requireAgreement(Text::tr("Delete version %1 of %2 permanently?")
                         .arg(QString::number(number), document.name),
                     context.isSet("yes"));
    Session &session = context.session();
    session.await(session.documents().removeVersion(version._id));
    context.out.setResult({{QStringLiteral("deleted"), versionJson(version, number)}});
}

void run(Context &context)
{
    const RemotePath path = RemotePath::parse(context.arguments(1, 1).constFirst());
    const VellDocument document = context.tree().find(path);
    if (document.type != QLatin1String("file"))
        throw Failure(ExitFailed,
                      Text::tr("%1 is a folder; folders have no versions.").arg(path.text()));
    if (context.isSet("make-current")) {
        makeCurrent(context, document, path);
        return;
    }
    if (context.isSet("delete")) {
        deleteVersion(context, document, path);
        return;
    }
    const QList<VellDocument> versions = versionsOf(context.session(), document);
    Table table;
    table.addColumn(Text::tr("Version"), Qt::AlignRight);
    table.addColumn(Text::tr("Size"), Qt::AlignRight);
    table.addColumn(Text::tr("Stored"));
    table.addColumn(Text::tr("By"), Qt::AlignLeft, Table::Fit::Drops);
    table.addColumn(Text::tr("Remark"), Qt::AlignLeft, Table::Fit::Shrinks);
    QJsonArray array;
    int number = versions.size();
    for (const VellDocument &version : versions) {
        const bool isNewest = number == versions.size();
        table.addRow({QString::number(number),
                      isNewest ? sizeText(document.fileSize) : sizeCellOf(version),
                      timeText(version.createdAt), context.session().userText(version.createdBy),
                      version.remark});
        array.append(versionJson(version, number));
        --number;
    }
    context.out.setResult({{QStringLiteral("versions"), array}});
    context.out.print(table);
}

} // namespace

const Command &historyCommand()
{
    static const Command command{
        "history",
        "PATH",
        QT_TRANSLATE_NOOP("velldoc", "list the versions of a file"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Lists the versions of the file PATH, newest first. \"velldoc get "
                          "--version N\" downloads one."),
        {{"make-current", "N",
          QT_TRANSLATE_NOOP("velldoc",
                            "Make a new, current version with the content of version N.")},
         {"delete", "N",
          QT_TRANSLATE_NOOP("velldoc",
                            "Delete version N permanently. Later versions have lower numbers "
                            "afterwards.")},
         {"y,yes", nullptr, QT_TRANSLATE_NOOP("velldoc", "Delete without asking.")},
         dryRunOption()},
        {{"velldoc history /Drawings/plan.dwg",
          QT_TRANSLATE_NOOP("velldoc", "the authors and times of all versions")},
         {"velldoc history --make-current 2 /Drawings/plan.dwg",
          QT_TRANSLATE_NOOP("velldoc", "go back to an earlier version")},
         {"velldoc history --delete 1 /Drawings/plan.dwg",
          QT_TRANSLATE_NOOP("velldoc", "delete the oldest version permanently")}},
        run,
    };
    return command;
}

} // namespace velldoc
