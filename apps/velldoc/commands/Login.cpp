#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/Interrupt.h>
#include <velldoc/output/Terminal.h>

#include <cstdio>

namespace velldoc {

namespace {

//! Never from the command line alone: other users of the machine can read that.
QString readToken()
{
    QString token;
    const QString prompt =
        Text::tr("Access token (it is not shown; empty for a service without users): ");
    const bool isRead = terminal::isTerminal(stdin) ? terminal::readHiddenLine(prompt, &token)
                                                    : terminal::readLine(&token);
    Interrupt::check();
    return isRead ? token : QString();
}

void run(Context &context)
{
    Settings settings = context.settings;
    settings.url = context.arguments(0, 1).value(0, settings.url);
    if (settings.url.isEmpty())
        throw Failure(ExitUsage,
                      Text::tr("Say where: velldoc login https://documents.example.com/."));
    if (!context.isSet("token") && qEnvironmentVariableIsEmpty("VELLDOC_TOKEN"))
        settings.token = readToken();
    // What does not work is not kept: neither is a project that is not there.
    Session session(settings);
    session.open();
    session.await(session.documents().count({}));
    settings.save();
    const QString user = session.userText(session.userId());
    context.out.setResult({{QStringLiteral("url"), session.baseApi()},
                           {QStringLiteral("project"), settings.project},
                           {QStringLiteral("user"), session.userId()},
                           {QStringLiteral("userName"), user}});
    context.out.note(Text::tr("velldoc now works at %1 in the project \"%2\" as %3.")
                         .arg(session.baseApi(), settings.project,
                              user.isEmpty() ? Text::tr("somebody") : user));
}

} // namespace

const Command &loginCommand()
{
    static const Command command{
        "login",
        "[URL]",
        QT_TRANSLATE_NOOP("velldoc", "remember a service, a project and an access token"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Tries the service URL with the project of --project and an access token, which is "
            "read from the terminal "
            "or the standard input, and remembers them in a file that only you can read. With "
            "--profile NAME "
            "it is one of several logins: commands with --profile NAME, or with VELLDOC_PROFILE in "
            "the environment, work there."),
        {},
        {{"velldoc login --project tower https://documents.example.com/",
          QT_TRANSLATE_NOOP("velldoc", "all later commands work there")}},
        run,
    };
    return command;
}

} // namespace velldoc
