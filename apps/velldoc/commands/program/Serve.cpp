#include <velldoc/commands/Commands.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/Text.h>

namespace velldoc {

namespace {

void run(Context &context)
{
    context.arguments(0, 0);
    QString folder = context.value("data");
    if (folder.isEmpty())
        folder = context.settings.dataDir;
    const QString address =
        context.isSet("listen") ? context.value("listen") : QStringLiteral("127.0.0.1:0");
    EmbeddedService().serve(folder, address, [&](const QString &served) {
        context.out.setResult(
            {{QStringLiteral("address"), served}, {QStringLiteral("data"), folder}});
        context.out.print(served);
        context.out.note(Text::tr("Serving %1; press Ctrl-C to stop.").arg(folder));
        // The program that has started the service waits for this line.
        context.out.finish(nullptr);
    });
}

} // namespace

const Command &serveCommand()
{
    static const Command command{
        "serve",
        "[--listen ADDRESS:PORT] [--data DIR]",
        QT_TRANSLATE_NOOP("velldoc", "run a service for others"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Runs a service for the documents that velldoc stores on this computer until Ctrl-C, "
            "and prints the address for --url. Other computers can connect if the service has "
            "users; \"vell-service user --help\" explains how to add them."),
        {
            {"listen", "ADDRESS:PORT",
             QT_TRANSLATE_NOOP(
                 "velldoc", "The address to listen on; by default a free port of this computer.")},
            {"data", "DIR", QT_TRANSLATE_NOOP("velldoc", "The data folder; by default your own.")},
        },
        {{"velldoc serve --listen 127.0.0.1:8080",
          QT_TRANSLATE_NOOP("velldoc", "for other programs on this computer")}},
        run,
    };
    return command;
}

} // namespace velldoc
