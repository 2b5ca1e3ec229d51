#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>

namespace velldoc {

namespace {

void run(Context &context)
{
    context.arguments(0, 0);
    const bool wasStored = Settings::forget(context.settings.profile);
    context.out.setResult({{QStringLiteral("forgotten"), wasStored}});
    context.out.note(wasStored ? Text::tr("The service and the access token are forgotten.")
                               : Text::tr("There was nothing to forget."));
}

} // namespace

const Command &logoutCommand()
{
    static const Command command{
        "logout",
        "",
        QT_TRANSLATE_NOOP("velldoc", "forget what login has remembered"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Removes the service, the project and the access token that \"velldoc "
                          "login\" has remembered."),
        {},
        {},
        run,
    };
    return command;
}

} // namespace velldoc
