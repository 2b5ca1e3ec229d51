#include <velldoc/commands/Commands.h>
#include <velldoc/output/DisplayWidth.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

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
    context.out.print(printable(name.isEmpty() ? Text::tr("an unknown user") : name));
    context.out.note(
        role.isEmpty()
            ? Text::tr("Using %1, project \"%2\".").arg(session.baseApi(), context.settings.project)
            : Text::tr("Using %1, project \"%2\", as %3.")
                  .arg(session.baseApi(), context.settings.project, role));
}

} // namespace

const Command &whoamiCommand()
{
    static const Command command{
        "whoami",
        "",
        QT_TRANSLATE_NOOP("velldoc", "print your name, service, project and role"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Prints your name on the service, and the service and the project that "
                          "the commands use."),
        {},
        {},
        run,
    };
    return command;
}

} // namespace velldoc
