#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/commands/Commands.h>

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
        context.out.note(Text::tr("Serving %1; Ctrl-C ends it.").arg(folder));
        // Whoever has started the service waits for this line.
        context.out.finish(nullptr);
    });
}

} // namespace

const Command &serveCommand()
{
    static const Command command{
        "serve",
        "[--listen ADDRESS:PORT] [--data DIR]",
        QT_TRANSLATE_NOOP("velldoc", "run the service for others"),
        QT_TRANSLATE_NOOP("velldoc",
                          "Serves the documents that velldoc keeps on this machine until Ctrl-C, "
                          "and prints the address for --url. "
                          "Other machines are served once the service has users; \"vell-service "
                          "user --help\" tells how to add them."),
        {
            {"listen", "ADDRESS:PORT",
             QT_TRANSLATE_NOOP("velldoc",
                               "Where to listen; any free port of this machine unless set.")},
            {"data", "DIR", QT_TRANSLATE_NOOP("velldoc", "The data folder; your own unless set.")},
        },
        {{"velldoc serve --listen 127.0.0.1:8080",
          QT_TRANSLATE_NOOP("velldoc", "for other programs of this machine")}},
        run,
    };
    return command;
}

} // namespace velldoc
