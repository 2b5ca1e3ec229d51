#include <velldoc/Context.h>
#include <velldoc/GlobalOptions.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/Json.h>

namespace velldoc {

namespace {

VellDocument make(Context &context, const RemotePath &path)
{
    if (path.names().isEmpty())
        throw Failure(ExitUsage, Text::tr("%1 has no name for a folder.").arg(path.text()));
    const bool makesParents = context.isSet("p");
    if (context.isDryRun()) {
        context.leaves(path.text());
        VellDocument folder;
        folder.name = path.name();
        folder.type = QStringLiteral("dir");
        return folder;
    }
    if (makesParents)
        return context.tree().makePath(path);
    if (context.tree().tryFind(path)) {
        throw Failure(
            ExitFailed,
            Text::tr("%1 is there already: choose another name, or pass -p if that will do.")
                .arg(path.text()));
    }
    const VellDocument parent = context.tree().findFolder(path.parent());
    return context.tree().makeFolder(parent._id, path.name());
}

void run(Context &context)
{
    const QStringList paths = context.arguments(1, 0);
    QJsonArray made;
    for (const QString &text : paths) {
        const RemotePath path = RemotePath::parse(text);
        made.append(documentJson(make(context, path), path.text()));
        context.out.setResult({{QStringLiteral("folders"), made}});
    }
}

} // namespace

const Command &mkdirCommand()
{
    static const Command command{
        "mkdir",
        "[-p] PATH...",
        QT_TRANSLATE_NOOP("velldoc", "make folders"),
        QT_TRANSLATE_NOOP("velldoc", "Makes each folder PATH in a folder that is there."),
        {{"p,parents", nullptr,
          QT_TRANSLATE_NOOP("velldoc",
                            "Make what is missing above it too; a folder that is there will do.")},
         dryRunOption()},
        {{"velldoc mkdir -p '/Drawings/Level 1'",
          QT_TRANSLATE_NOOP("velldoc", "make both folders, as far as they are missing")}},
        run,
    };
    return command;
}

} // namespace velldoc
