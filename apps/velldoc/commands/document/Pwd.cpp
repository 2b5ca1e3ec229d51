#include <velldoc/commands/Commands.h>
#include <velldoc/output/DisplayWidth.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

void run(Context &context)
{
    const RemotePath path = RemotePath::parse(context.arguments(1, 1).constFirst());
    const VellDocument document = context.tree().find(path);
    if (document._id.isEmpty())
        throw Failure(ExitUsage, Text::tr("The top level has no password."));
    const QString pwd =
        context.session().await(context.session().documents().password(document._id));
    context.out.setResult(
        {{QStringLiteral("password"), pwd.isEmpty() ? QJsonValue() : QJsonValue(pwd)}});
    if (pwd.isEmpty())
        context.out.note(Text::tr("%1 has no password.").arg(path.text()));
    else
        context.out.print(printable(pwd));
}

} // namespace

const Command &pwdCommand()
{
    static const Command command{
        "pwd",
        "PATH",
        QT_TRANSLATE_NOOP("velldoc", "show the password of a document"),
        QT_TRANSLATE_NOOP("velldoc", "Prints the access password of the document PATH."),
        {},
        {{"velldoc pwd /Contracts/offer.pdf",
          QT_TRANSLATE_NOOP("velldoc", "the password of the offer")}},
        run,
    };
    return command;
}

} // namespace velldoc
