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
        {"cacert", "FILE",
         QT_TRANSLATE_NOOP("velldoc", "Trust the certificate authorities in this PEM file, too.")},
        {"cert", "FILE",
         QT_TRANSLATE_NOOP("velldoc", "The client certificate: a PEM or a PFX file.")},
        {"key", "FILE",
         QT_TRANSLATE_NOOP("velldoc",
                           "The private key of --cert, where that file does not hold it.")},
        {"proxy", "URL", QT_TRANSLATE_NOOP("velldoc", "The proxy; \"none\" connects directly.")},
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
    for (const Settings::Value &value : Settings::values) {
        const QString option = QString::fromLatin1(value.option);
        if (value.option && parser.isSet(option))
            settings.*value.member = parser.value(option);
    }
    return settings;
}

} // namespace velldoc
