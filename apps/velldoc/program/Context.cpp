#include <velldoc/program/Context.h>

#include <velldoc/output/HumanText.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/program/Usage.h>

#include <algorithm>

namespace velldoc {

Session &Context::session()
{
    if (!m_session) {
        requireKnownProfile();
        m_session = std::make_unique<Session>(settings);
        m_session->open();
        noteNewProject();
    }
    return *m_session;
}

//! Without this a misspelled name would use the embedded service.
void Context::requireKnownProfile() const
{
    const QString &name = settings.profile;
    if (name.isEmpty() || !settings.url.isEmpty())
        return;
    const QStringList profiles = Settings::profiles();
    if (!profiles.contains(name)) {
        throw Failure(
            ExitUsage,
            joinedSentences(
                {Text::tr("There is no login \"%1\": \"velldoc login --profile %1 URL\" stores it.")
                     .arg(name),
                 didYouMean(mostAlike(name, profiles))}));
    }
}

//! The embedded service accepts every project; a misspelled name would look like an empty project.
void Context::noteNewProject() const
{
    const QList<VellProject> projects = m_session->user().projects;
    const bool isKnown =
        std::any_of(projects.cbegin(), projects.cend(),
                    [this](const VellProject &project) { return project.id == settings.project; });
    if (!isKnown && !projects.isEmpty() && m_session->isEmbedded()) {
        out.note(Text::tr("There is no project \"%1\" yet: the first document creates it.")
                     .arg(settings.project));
    }
}

RemoteTree &Context::tree()
{
    if (!m_tree)
        m_tree = std::make_unique<RemoteTree>(session());
    return *m_tree;
}

QStringList Context::arguments(int least, int most) const
{
    QStringList all = arguments();
    if (all.size() < least) {
        // A word such as "up" is before the other arguments.
        const bool hasAction = !m_command.actions.isEmpty() && !all.isEmpty();
        const QList<UsageWord> words =
            usageWords(m_command, hasAction ? all.constFirst() : QString());
        const int position = all.size() - (hasAction ? 1 : 0);
        const QString missing = words.value(qMin(position, words.size() - 1)).name;
        throw Failure(ExitUsage,
                      Text::tr("%1 is missing: \"%2\".").arg(missing, usageLine(m_command)));
    }
    if (all.size() > most)
        throw Failure(ExitUsage,
                      Text::tr("There are too many arguments: \"%1\".").arg(all.at(most)));
    return all;
}

bool Context::isSet(const char *option) const
{
    const QByteArray word = ',' + QByteArray(option) + ',';
    const auto isIt = [&word](const CommandOption &known) {
        return (',' + QByteArray(known.names) + ',').contains(word);
    };
    const auto isAmong = [isIt](const QVector<CommandOption> &options) {
        return std::any_of(options.begin(), options.end(), isIt);
    };
    return (isAmong(m_command.options) || isAmong(globalOptions()))
        && m_parser.isSet(QString::fromLatin1(option));
}

int Context::versionNumber() const
{
    const int version = number("version", 0);
    if (isSet("version") && version == 0)
        throw Failure(ExitUsage, Text::tr("Versions are numbered from 1."));
    return version;
}

qint64 Context::bytes(const char *option) const
{
    if (!isSet(option))
        return 0;
    const std::optional<qint64> bytes = bytesFromText(value(option));
    if (!bytes) {
        throw Failure(ExitUsage,
                      Text::tr("--%1 takes a number of bytes like 500K, 2M or 1.5G, not \"%2\".")
                          .arg(QString::fromLatin1(option), value(option)));
    }
    return *bytes;
}

QString Context::word(const char *option) const
{
    QString text = value(option);
    const QVector<CommandOption> options = m_command.options + globalOptions();
    for (const CommandOption &known : options) {
        const QString name = QString::fromLatin1(known.names).section(QLatin1Char(','), -1);
        if (!isSet(option) || name != QLatin1String(option))
            continue;
        const QStringList words = QString::fromLatin1(known.words).split(QLatin1Char(' '));
        if (words.contains(text))
            return text;
        const QString sentence = Text::tr("--%1 takes one of %2, not \"%3\".")
                                     .arg(name, words.join(QStringLiteral(", ")), text);
        throw Failure(ExitUsage, joinedSentences({sentence, didYouMean(mostAlike(text, words))}));
    }
    return text;
}

int Context::verbosity() const
{
    const QStringList names = m_parser.optionNames();
    return names.count(QStringLiteral("v")) + names.count(QStringLiteral("verbose"));
}

bool Context::leaves(const QString &name) const
{
    if (isDryRun())
        out.printName(name);
    return isDryRun();
}

int Context::number(const char *option, int fallback) const
{
    if (!isSet(option))
        return fallback;
    bool isNumber = false;
    const int number = value(option).toInt(&isNumber);
    if (!isNumber || number < 0) {
        throw Failure(ExitUsage,
                      Text::tr("--%1 takes a whole number, not \"%2\".")
                          .arg(QString::fromLatin1(option), value(option)));
    }
    return number;
}

} // namespace velldoc
