#include <velldoc/GlobalOptions.h>

#include <velldoc/Settings.h>
#include <velldoc/Text.h>

#include <QCommandLineParser>

namespace velldoc {

const QVector<CommandOption> &globalOptions()
{
    static const QVector<CommandOption> options{
        {"url", "URL", QT_TRANSLATE_NOOP("velldoc", "The base address of the service.")},
        {"project", "ID", QT_TRANSLATE_NOOP("velldoc", "The project; \"default\" unless set.")},
        {"token", "TOKEN", QT_TRANSLATE_NOOP("velldoc", "The access token.")},
        {"json", nullptr, QT_TRANSLATE_NOOP("velldoc", "Print one JSON document.")},
        {"h,help", nullptr, QT_TRANSLATE_NOOP("velldoc", "Explain the command.")},
    };
    return options;
}

void addOptions(QCommandLineParser &parser, const QVector<CommandOption> &options)
{
    for (const CommandOption &option : options) {
        const QStringList names = QString::fromLatin1(option.names).split(QLatin1Char(','));
        parser.addOption(QCommandLineOption(names, Text::tr(option.help),
                                            QString::fromLatin1(option.valueName)));
    }
}

Settings settingsOf(const QCommandLineParser &parser)
{
    Settings settings = Settings::load();
    if (parser.isSet(QStringLiteral("url")))
        settings.url = parser.value(QStringLiteral("url"));
    if (parser.isSet(QStringLiteral("project")))
        settings.project = parser.value(QStringLiteral("project"));
    if (parser.isSet(QStringLiteral("token")))
        settings.token = parser.value(QStringLiteral("token"));
    return settings;
}

} // namespace velldoc
