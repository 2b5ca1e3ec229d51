#include <velldoc/commands/Commands.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

void run(Context &context)
{
    context.arguments(0, 0);
    if (context.isDryRun()) {
        if (Settings::profiles().contains(context.settings.profile))
            context.leaves(Settings::load(context.settings.profile).url);
        return;
    }
    const bool wasStored = Settings::forget(context.settings.profile);
    context.out.setResult({{QStringLiteral("forgotten"), wasStored}});
    context.out.note(wasStored ? Text::tr("The stored service and access token have been removed.")
                               : Text::tr("There was no stored login."));
}

} // namespace

const Command &logoutCommand()
{
    static const Command command{
        "logout",
        "",
        QT_TRANSLATE_NOOP("velldoc", "remove a stored login"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Removes the stored service, project and access token of \"velldoc login\"."),
        {dryRunOption()},
        {},
        run,
    };
    return command;
}

} // namespace velldoc
