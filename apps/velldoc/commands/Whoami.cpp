#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>
#include <velldoc/output/DisplayWidth.h>

namespace velldoc {

namespace {

void run(Context &context)
{
    context.arguments(0, 0);
    Session &session = context.session();
    const VellUser user = session.user();
    QString role;
    for (const VellProject &project : user.projects) {
        if (project.id == context.settings.project)
            role = project.role;
    }
    context.out.setResult({{QStringLiteral("id"), user.id},
                           {QStringLiteral("name"), user.name},
                           {QStringLiteral("url"), session.baseApi()},
                           {QStringLiteral("project"), context.settings.project},
                           {QStringLiteral("role"), role}});
    const QString name = user.name.isEmpty() ? user.id : user.name;
    context.out.print(printable(name.isEmpty() ? Text::tr("somebody") : name));
    context.out.note(role.isEmpty() ? Text::tr("At %1, in the project \"%2\".")
                                          .arg(session.baseApi(), context.settings.project)
                                    : Text::tr("At %1, in the project \"%2\" as %3.")
                                          .arg(session.baseApi(), context.settings.project, role));
}

} // namespace

const Command &whoamiCommand()
{
    static const Command command{
        "whoami",
        "",
        QT_TRANSLATE_NOOP("velldoc", "say who you are, where, and in which role"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Prints your name as the service knows it, and says at which service and "
                          "in which project "
                          "the commands work."),
        {},
        {},
        run,
    };
    return command;
}

} // namespace velldoc
