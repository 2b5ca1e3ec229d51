#include <velldoc/commands/Commands.h>
#include <velldoc/program/Context.h>
#include <velldoc/program/GlobalOptions.h>
#include <velldoc/program/Text.h>
#include <velldoc/program/Usage.h>

#include <QJsonArray>

namespace velldoc {

namespace {

const Settings::Value &valueOf(const QString &key)
{
    QStringList keys;
    for (const Settings::Value &value : Settings::values) {
        if (value.key == nullptr)
            continue;
        keys.append(QString::fromLatin1(value.key));
        if (keys.constLast() == key)
            return value;
    }
    throw Failure(ExitUsage,
                  Text::tr("\"%1\" is not one of %2.").arg(key, keys.join(QStringLiteral(", "))));
}

//! Returns the token in a form that does not reveal it on the screen.
QString shownValue(const Settings &settings, const Settings::Value &value)
{
    const QString text = settings.*value.member;
    const bool isSecret = value.member == &Settings::token;
    return isSecret && !text.isEmpty() ? QStringLiteral("***") : text;
}

void list(Context &context)
{
    QJsonArray array;
    for (const Settings::Value &value : Settings::values) {
        if (value.key == nullptr)
            continue;
        const QString key = QString::fromLatin1(value.key);
        const QString text = shownValue(context.settings, value);
        array.append(QJsonObject{{QStringLiteral("name"), key}, {QStringLiteral("value"), text}});
        context.out.print(key + QLatin1Char('=') + text);
    }
    context.out.setResult({{QStringLiteral("settings"), array}});
    context.out.note(Text::tr("Taken from the command line, the environment and %1.")
                         .arg(Settings::configPath()));
}

void listProfiles(Context &context)
{
    const QStringList names = Settings::profiles();
    QJsonArray array;
    for (const QString &name : names) {
        const Settings settings = Settings::load(name);
        array.append(QJsonObject{{QStringLiteral("name"), name},
                                 {QStringLiteral("url"), settings.url},
                                 {QStringLiteral("project"), settings.project}});
        context.out.print(
            QStringLiteral("%1\t%2\t%3")
                .arg(name.isEmpty() ? QStringLiteral("-") : name, settings.url, settings.project));
    }
    context.out.setResult({{QStringLiteral("profiles"), array}});
    if (names.isEmpty())
        context.out.note(Text::tr("There is no login."));
}

void write(const Context &context, const QString &key, const QString &text)
{
    const QString known = QString::fromLatin1(valueOf(key).key);
    if (!context.leaves(known))
        Settings::write(context.settings.profile, known, text);
}

void run(Context &context)
{
    const QStringList arguments = context.arguments(0, 3);
    const QString action = arguments.value(0, QStringLiteral("list"));
    const QString key = arguments.value(1);
    if (action == QLatin1String("list")) {
        list(context);
    } else if (action == QLatin1String("profiles")) {
        listProfiles(context);
    } else if (action == QLatin1String("get")) {
        const QString text = shownValue(context.settings, valueOf(key));
        context.out.setResult({{QStringLiteral("value"), text}});
        context.out.print(text);
    } else if (action == QLatin1String("set") && arguments.size() == 3) {
        write(context, key, arguments.at(2));
    } else if (action == QLatin1String("unset") && arguments.size() == 2) {
        write(context, key, {});
    } else {
        throw Failure(ExitUsage,
                      Text::tr("Write it like this: %1.").arg(usageLine(configCommand())));
    }
}

} // namespace

const Command &configCommand()
{
    static const Command command{
        "config",
        "[list | get NAME | set NAME VALUE | unset NAME | profiles]",
        QT_TRANSLATE_NOOP("velldoc", "show or change the settings"),
        QT_TRANSLATE_NOOP(
            "velldoc",
            "Shows the settings of the commands, changes one in the configuration file, or lists "
            "the logins. With --profile NAME it applies to that login."),
        {dryRunOption()},
        {{"velldoc config set project tower",
          QT_TRANSLATE_NOOP("velldoc", "use another project from now on")}},
        run,
        {"list", "get", "set", "unset", "profiles"},
        {"url", "project", "token", "cacert", "cert", "key", "proxy", "data"},
    };
    return command;
}

} // namespace velldoc
