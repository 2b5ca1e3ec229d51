#include <velldoc/commands/Commands.h>
#include <velldoc/output/Table.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

struct Right
{
    const char *name;
    VellRight right;
    const char *meaning;
};

constexpr Right Rights[] = {
    {"download", VellRight::Download, QT_TRANSLATE_NOOP("velldoc", "download it")},
    {"upload", VellRight::Upload, QT_TRANSLATE_NOOP("velldoc", "upload")},
    {"edit", VellRight::Edit, QT_TRANSLATE_NOOP("velldoc", "change it")},
    {"delete", VellRight::Delete, QT_TRANSLATE_NOOP("velldoc", "delete it")},
    {"edit-self", VellRight::EditOwn, QT_TRANSLATE_NOOP("velldoc", "change what you have created")},
    {"delete-self", VellRight::DeleteOwn,
     QT_TRANSLATE_NOOP("velldoc", "delete what you have created")},
};

bool ask(Context &context, const Right &right, const VellDocument &document)
{
    Session &session = context.session();
    return session.await(session.documents().may(right.right, document._id, document.category));
}

//! For scripts: sets the exit code.
void answer(Context &context, const VellDocument &document, const QString &name)
{
    for (const Right &right : Rights) {
        if (name != QLatin1String(right.name))
            continue;
        const bool isAllowed = ask(context, right, document);
        context.out.setResult({{QStringLiteral("rights"), QJsonObject{{name, isAllowed}}}});
        context.out.print(isAllowed ? Text::tr("yes") : Text::tr("no"));
        if (!isAllowed)
            throw Failure(ExitNotAllowed, Text::tr("You may not do that (%1).").arg(name));
        return;
    }
    throw Failure(ExitUsage, Text::tr("There is no right called \"%1\".").arg(name));
}

void run(Context &context)
{
    const QStringList arguments = context.arguments(1, 2);
    const VellDocument document = context.tree().find(RemotePath::parse(arguments.constFirst()));
    if (arguments.size() == 2) {
        answer(context, document, arguments.constLast());
        return;
    }
    Table table;
    table.addColumn(Text::tr("Right"));
    table.addColumn(Text::tr("Granted"));
    table.addColumn(Text::tr("Meaning"), Qt::AlignLeft, Table::Fit::Wraps);
    QJsonObject granted;
    for (const Right &right : Rights) {
        const QString name = QString::fromLatin1(right.name);
        const bool isAllowed = ask(context, right, document);
        granted.insert(name, isAllowed);
        table.addRow({name, isAllowed ? Text::tr("yes") : Text::tr("no"), Text::tr(right.meaning)});
    }
    context.out.setResult({{QStringLiteral("rights"), granted}});
    context.out.print(table);
}

} // namespace

const Command &canCommand()
{
    static const Command command{
        "can",
        "PATH [RIGHT]",
        QT_TRANSLATE_NOOP("velldoc", "show your rights"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Shows your rights on PATH; / is the whole project. With the name of a "
                          "right, the exit code is 0 if you have it, otherwise 4."),
        {},
        {{"velldoc can /Drawings upload && velldoc put plan.dwg /Drawings",
          QT_TRANSLATE_NOOP("velldoc", "store a file only where that is allowed")}},
        run,
        {},
        {"download", "upload", "edit", "delete", "edit-self", "delete-self"},
    };
    return command;
}

} // namespace velldoc
