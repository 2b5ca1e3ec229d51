#include <velldoc/program/GlobalOptions.h>

#include <velldoc/program/Failure.h>
#include <velldoc/program/Text.h>
#include <velldoc/session/Settings.h>

#include <QCommandLineParser>

namespace velldoc {

const QVector<CommandOption> &globalOptions()
{
    static const QVector<CommandOption> options{
        {"url", "URL", QT_TRANSLATE_NOOP("velldoc", "The base address of the service.")},
        {"project", "ID", QT_TRANSLATE_NOOP("velldoc", "The project; by default \"default\".")},
        {"token", "TOKEN", QT_TRANSLATE_NOOP("velldoc", "The access token.")},
        {"cacert", "FILE",
         QT_TRANSLATE_NOOP("velldoc", "Trust the certificate authorities in this PEM file, too.")},
        {"cert", "FILE",
         QT_TRANSLATE_NOOP("velldoc", "The client certificate: a PEM or a PFX file.")},
        {"key", "FILE",
         QT_TRANSLATE_NOOP("velldoc", "The private key of --cert, if it is not in the same file.")},
        {"proxy", "URL", QT_TRANSLATE_NOOP("velldoc", "The proxy; \"none\" connects directly.")},
        {"profile", "NAME",
         QT_TRANSLATE_NOOP("velldoc", "Use the login with this name: see \"velldoc help login\".")},
        {"timeout", "SECONDS",
         QT_TRANSLATE_NOOP("velldoc",
                           "Time in seconds without any data after which a request is tried again; "
                           "the default is 30, 0 means no limit.")},
        {"output", "FORMAT",
         QT_TRANSLATE_NOOP(
             "velldoc",
             "Print the result as json, csv, tsv or table; --json is the same as --output json."),
         "json csv tsv table"},
        {"columns", "LIST",
         QT_TRANSLATE_NOOP(
             "velldoc",
             "The columns of csv, tsv and table: names as in JSON, separated by commas.")},
        {"json", nullptr, QT_TRANSLATE_NOOP("velldoc", "Print one JSON document.")},
        {"0,null", nullptr,
         QT_TRANSLATE_NOOP("velldoc",
                           "End each name with NUL instead of a newline, for xargs -0.")},
        {"v,verbose", nullptr,
         QT_TRANSLATE_NOOP("velldoc", "Report each file; -vv reports each request, too.")},
        {"log-file", "FILE",
         QT_TRANSLATE_NOOP("velldoc",
                           "Append all messages and requests, with their times, to this file.")},
        {"h,help", nullptr, QT_TRANSLATE_NOOP("velldoc", "Show the help of the command.")},
    };
    return options;
}

bool takesValue(const QVector<CommandOption> &options, const QString &argument)
{
    for (const CommandOption &option : options) {
        const QStringList names = QString::fromLatin1(option.names).split(QLatin1Char(','));
        for (const QString &name : names) {
            const QLatin1String dashes(name.size() == 1 ? "-" : "--");
            if (option.valueName != nullptr && argument == dashes + name)
                return true;
        }
    }
    return false;
}

QStringList optionWords(const QVector<CommandOption> &options)
{
    QStringList words;
    for (const CommandOption &option : options)
        words.append(QString::fromLatin1(option.names).section(QLatin1Char(','), -1));
    return words;
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
    const QString profile = parser.value(QStringLiteral("profile"));
    if (profile.contains(QLatin1Char('/')))
        throw Failure(ExitUsage, Text::tr("The name of a login must not contain \"/\"."));
    Settings settings = Settings::load(profile);
    for (const Settings::Value &value : Settings::values) {
        const QString option = QString::fromLatin1(value.option);
        if (value.option && parser.isSet(option))
            settings.*value.member = parser.value(option);
    }
    return settings;
}

const CommandOption &dryRunOption()
{
    static const CommandOption option{
        "dry-run", nullptr,
        QT_TRANSLATE_NOOP("velldoc", "Change nothing; print what would be done.")};
    return option;
}

QVector<CommandOption> filterOptions()
{
    return {
        {"include", "PATTERN",
         QT_TRANSLATE_NOOP("velldoc",
                           "Include only files of folders that match PATTERN; may be repeated.")},
        {"exclude", "PATTERN",
         QT_TRANSLATE_NOOP("velldoc",
                           "Exclude entries of folders that match PATTERN; may be repeated.")},
        {"ignore-file", "NAME",
         QT_TRANSLATE_NOOP("velldoc",
                           "The file in the local folder with further patterns to exclude; the "
                           "default is .vellignore, empty for none.")},
    };
}

QVector<CommandOption> withTransferOptions(const QVector<CommandOption> &options)
{
    return options + filterOptions()
        + QVector<CommandOption>{
            {"transfers", "N",
             QT_TRANSLATE_NOOP(
                 "velldoc",
                 "Number of small files that are transferred at the same time; the default is 4.")},
            {"bwlimit", "RATE",
             QT_TRANSLATE_NOOP(
                 "velldoc",
                 "Limit the speed to this number of bytes per second, such as 500K or 2M.")},
            {"retries", "N",
             QT_TRANSLATE_NOOP(
                 "velldoc",
                 "Number of attempts in a row without progress for each file; the default is 6.")},
            dryRunOption(),
        };
}

} // namespace velldoc
