#include <velldoc/commands/Commands.h>
#include <velldoc/output/Table.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

#include <QJsonArray>

namespace velldoc {

namespace {

void run(Context &context)
{
    context.arguments(0, 0);
    const QList<VellProject> projects = context.session().user().projects;
    Table table;
    table.addColumn(Text::tr("Identifier"));
    table.addColumn(Text::tr("Role"));
    table.addColumn(Text::tr("Name"), Qt::AlignLeft, Table::Fit::Shrinks);
    QJsonArray array;
    for (const VellProject &project : projects) {
        table.addRow({project.id, project.role, project.name});
        array.append(QJsonObject{{QStringLiteral("id"), project.id},
                                 {QStringLiteral("name"), project.name},
                                 {QStringLiteral("role"), project.role}});
    }
    context.out.setResult({{QStringLiteral("projects"), array}});
    if (projects.isEmpty())
        context.out.note(Text::tr("You do not have any projects."));
    else
        context.out.print(table);
}

} // namespace

const Command &projectsCommand()
{
    static const Command command{
        "projects",
        "",
        QT_TRANSLATE_NOOP("velldoc", "list your projects"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Lists the projects that you may open, each with your role. \"velldoc "
                          "config set project ID\" sets the default project."),
        {},
        {{"velldoc projects --json", QT_TRANSLATE_NOOP("velldoc", "for a script")}},
        run,
    };
    return command;
}

} // namespace velldoc
