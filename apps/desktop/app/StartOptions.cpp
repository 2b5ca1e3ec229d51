#include <desktop/app/StartOptions.h>

#include <QCommandLineParser>
#include <QCoreApplication>

namespace desktop {

namespace {

class OptionText
{
    Q_DECLARE_TR_FUNCTIONS(desktop::StartOptions)

public:
    static QString description()
    {
        return tr("The documents of a project, on this computer or on a service.");
    }
    static QString url()
    {
        return tr(
            "The address of the service. The token is taken from the variable VELLDOC_TOKEN.");
    }
    static QString project() { return tr("The project to open there."); }
    static QString home() { return tr("Store all data of the program in this folder."); }
    static QString noService()
    {
        return tr("Ask for an address instead of starting a service on this computer.");
    }
};

} // namespace

StartOptions StartOptions::fromArguments(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(OptionText::description());
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption url(QStringLiteral("url"), OptionText::url(),
                                 QStringLiteral("ADDRESS"), qEnvironmentVariable("VELLDOC_URL"));
    const QCommandLineOption project(QStringLiteral("project"), OptionText::project(),
                                     QStringLiteral("ID"), qEnvironmentVariable("VELLDOC_PROJECT"));
    const QCommandLineOption home(QStringLiteral("home"), OptionText::home(),
                                  QStringLiteral("DIR"));
    const QCommandLineOption noService(QStringLiteral("no-service"), OptionText::noService());
    parser.addOptions({url, project, home, noService});
    parser.process(arguments);
    StartOptions options;
    options.paths = parser.isSet(home) ? AppPaths::below(parser.value(home)) : AppPaths::standard();
    options.isNoService = parser.isSet(noService);
    if (!parser.value(url).isEmpty()) {
        SavedConnection connection;
        connection.address = parser.value(url);
        connection.projectId = parser.value(project);
        connection.token = qEnvironmentVariable("VELLDOC_TOKEN");
        connection.caCertificates = qEnvironmentVariable("VELLDOC_CACERT");
        connection.proxy = qEnvironmentVariable("VELLDOC_PROXY");
        options.connection = connection;
    }
    return options;
}

} // namespace desktop
