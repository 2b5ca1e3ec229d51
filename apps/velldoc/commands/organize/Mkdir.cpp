#include <velldoc/commands/Commands.h>
#include <velldoc/output/Json.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

VellDocument make(Context &context, const RemotePath &path)
{
    if (path.names().isEmpty())
        throw Failure(ExitUsage,
                      Text::tr("%1 is the top level: add the name of a folder.").arg(path.text()));
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
        throw Failure(ExitFailed,
                      Text::tr("%1 already exists: choose another name, or pass -p to accept it.")
                          .arg(path.text()));
    }
    const VellDocument parent = context.tree().findFolder(path.parent());
    return context.tree().makeFolder(parent._id, path.name());
}

void run(Context &context)
{
    const QStringList paths = context.arguments(1);
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
        QT_TRANSLATE_NOOP("velldoc", "create folders"),
        QT_TRANSLATE_NOOP("velldoc", "Creates each folder PATH in an existing folder."),
        {{"p,parents", nullptr,
          QT_TRANSLATE_NOOP("velldoc",
                            "Create missing parent folders, too; accept existing folders.")},
         dryRunOption()},
        {{"velldoc mkdir -p '/Drawings/Level 1'",
          QT_TRANSLATE_NOOP("velldoc", "create both folders if they do not exist")}},
        run,
    };
    return command;
}

} // namespace velldoc
