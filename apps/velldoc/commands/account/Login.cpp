#include <velldoc/commands/Commands.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>
#include <velldoc/system/Terminal.h>

#include <cstdio>

namespace velldoc {

namespace {

//! Not only from the command line: other users of the computer can read that.
QString readToken()
{
    QString token;
    const QString prompt =
        Text::tr("Access token (not shown while you type; empty for a service without users): ");
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
                      Text::tr("The address of the service is missing: velldoc login "
                               "https://documents.example.com/."));
    if (!context.isSet("token") && qEnvironmentVariableIsEmpty("VELLDOC_TOKEN"))
        settings.token = readToken();
    // Only valid settings are stored, with an existing project.
    Session session(settings);
    session.open();
    session.await(session.documents().count({}));
    if (context.leaves(session.baseApi()))
        return;
    settings.save();
    const QString user = session.userText(session.userId());
    context.out.setResult({{QStringLiteral("url"), session.baseApi()},
                           {QStringLiteral("project"), settings.project},
                           {QStringLiteral("user"), session.userId()},
                           {QStringLiteral("userName"), user}});
    context.out.note(Text::tr("velldoc now uses %1, project \"%2\", as %3.")
                         .arg(session.baseApi(), settings.project,
                              user.isEmpty() ? Text::tr("an unknown user") : user));
}

} // namespace

const Command &loginCommand()
{
    static const Command command{
        "login",
        "[URL]",
        QT_TRANSLATE_NOOP("velldoc", "store a service, a project and an access token"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Connects to the service URL with the project of --project and an access token, which "
            "is read from the terminal or the standard input, and stores them in a file that only "
            "you can read. With --profile NAME you can have several logins: commands with "
            "--profile NAME, or with VELLDOC_PROFILE in the environment, use this one."),
        {dryRunOption()},
        {{"velldoc login --project tower https://documents.example.com/",
          QT_TRANSLATE_NOOP("velldoc", "all later commands use it")}},
        run,
    };
    return command;
}

} // namespace velldoc
