#include <service/cli/Commands.h>
#include <service/cli/Output.h>
#include <service/records/Users.h>
#include <service/storage/Database.h>

#include <QDir>
#include <QFileInfo>

#include <functional>

namespace service {

namespace {

QCommandLineOption dataOption()
{
    return {QStringLiteral("data"), QStringLiteral("The data folder of the service."),
            QStringLiteral("DIR")};
}

//! Opens the records and runs \a command; a service may be running on them.
int withUsers(const QCommandLineParser &parser, const std::function<void(Users &)> &command)
{
    const QString folder = parser.value(QStringLiteral("data"));
    if (folder.isEmpty())
        return fail(QStringLiteral("Say which data folder: --data DIR."), ExitUsage);
    try {
        if (!QDir().mkpath(folder))
            return fail(QStringLiteral("The data folder %1 cannot be made.").arg(folder));
        Database database(folder + QStringLiteral("/records.sqlite"));
        database.open();
        Users users(database);
        command(users);
        return 0;
    } catch (const std::exception &error) {
        return fail(QString::fromUtf8(error.what()));
    }
}

int wrongUse(const QString &usage)
{
    return fail(QStringLiteral("The command is: vell-service %1").arg(usage), ExitUsage);
}

} // namespace

int runUser(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "user add NAME   adds a user and prints the access token, which is not kept\n"
        "user list       prints the users"));
    parser.addOption(dataOption());
    int code = 0;
    if (!parseArguments(parser, arguments, &code))
        return code;
    const QStringList words = parser.positionalArguments();
    if (words.value(0) == QLatin1String("add") && words.size() == 2)
        return withUsers(parser, [&](Users &users) { printLine(users.add(words.at(1))); });
    if (words == QStringList{QStringLiteral("list")}) {
        return withUsers(parser, [](Users &users) {
            const QList<User> list = users.list();
            for (const User &user : list)
                printLine(QStringLiteral("%1  %2").arg(user.id, user.name));
        });
    }
    return wrongUse(QStringLiteral("user add NAME --data DIR, or user list --data DIR."));
}

int runProject(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("project add ID   adds a project"));
    parser.addOption(dataOption());
    parser.addOption({QStringLiteral("name"),
                      QStringLiteral("The name shown to people; the id without it."),
                      QStringLiteral("TEXT")});
    int code = 0;
    if (!parseArguments(parser, arguments, &code))
        return code;
    const QStringList words = parser.positionalArguments();
    if (words.value(0) != QLatin1String("add") || words.size() != 2)
        return wrongUse(QStringLiteral("project add ID [--name TEXT] --data DIR."));
    return withUsers(parser, [&](Users &users) {
        users.addProject(words.at(1), parser.value(QStringLiteral("name")));
    });
}

int runRole(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "role set PROJECT USER ROLE   ROLE is owner, editor, contributor, viewer or none"));
    parser.addOption(dataOption());
    int code = 0;
    if (!parseArguments(parser, arguments, &code))
        return code;
    const QStringList words = parser.positionalArguments();
    if (words.value(0) != QLatin1String("set") || words.size() != 4)
        return wrongUse(QStringLiteral("role set PROJECT USER ROLE --data DIR."));
    return withUsers(parser,
                     [&](Users &users) { users.setRole(words.at(1), words.at(2), words.at(3)); });
}

} // namespace service
