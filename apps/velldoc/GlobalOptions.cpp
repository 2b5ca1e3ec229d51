#include <velldoc/GlobalOptions.h>

#include <velldoc/Failure.h>
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
        {"profile", "NAME",
         QT_TRANSLATE_NOOP("velldoc", "The login of this name: see \"velldoc help login\".")},
        {"timeout", "SECONDS",
         QT_TRANSLATE_NOOP("velldoc",
                           "How long nothing may move before a request is tried again; 30 unless "
                           "set, 0 for ever.")},
        {"output", "FORMAT",
         QT_TRANSLATE_NOOP(
             "velldoc",
             "Print the result as json, csv, tsv or table; --json is short for the first."),
         "json csv tsv table"},
        {"columns", "LIST",
         QT_TRANSLATE_NOOP(
             "velldoc",
             "The fields of csv, tsv and table, named as in JSON and separated by commas.")},
        {"json", nullptr, QT_TRANSLATE_NOOP("velldoc", "Print one JSON document.")},
        {"0,null", nullptr,
         QT_TRANSLATE_NOOP("velldoc",
                           "End each name with NUL instead of a line's end, for xargs -0.")},
        {"v,verbose", nullptr,
         QT_TRANSLATE_NOOP("velldoc",
                           "Say what is done with each file; -vv shows each request, too.")},
        {"log-file", "FILE",
         QT_TRANSLATE_NOOP("velldoc",
                           "Append all messages and requests, with their times, to this file.")},
        {"h,help", nullptr, QT_TRANSLATE_NOOP("velldoc", "Explain the command.")},
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
        throw Failure(ExitUsage, Text::tr("The name of a login has no \"/\"."));
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
                           "Of folders only the files that fit PATTERN; may be repeated.")},
        {"exclude", "PATTERN",
         QT_TRANSLATE_NOOP("velldoc", "Of folders nothing that fits PATTERN; may be repeated.")},
        {"ignore-file", "NAME",
         QT_TRANSLATE_NOOP("velldoc",
                           "The file in the local folder whose lines are such patterns; "
                           ".vellignore unless set, empty for none.")},
    };
}

QVector<CommandOption> withTransferOptions(const QVector<CommandOption> &options)
{
    return options + filterOptions()
        + QVector<CommandOption>{
            {"transfers", "N",
             QT_TRANSLATE_NOOP("velldoc", "How many small files go at once; 4 unless set.")},
            {"bwlimit", "RATE",
             QT_TRANSLATE_NOOP("velldoc", "At most so many bytes per second, such as 500K or 2M.")},
            {"retries", "N",
             QT_TRANSLATE_NOOP(
                 "velldoc", "How often a file is tried in a row without progress; 6 unless set.")},
            dryRunOption(),
        };
}

} // namespace velldoc
