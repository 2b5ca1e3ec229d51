#include <service/cli/Commands.h>
#include <service/cli/OpenFolder.h>
#include <service/cli/Output.h>
#include <service/records/Projects.h>
#include <service/records/Shares.h>
#include <service/records/Times.h>
#include <service/records/Users.h>

#include <vector>

namespace service {

namespace {

//! An action of a command, such as "user add NAME".
struct AdminAction
{
    const char *usage; //!< the command, the action, and the names of its arguments
    const char *help;
    OpenFolder::Missing missing;
    //! \a words are the arguments.
    void (*run)(OpenFolder &folder, const QStringList &words, const QCommandLineParser &options);

    QStringList words() const { return QString::fromLatin1(usage).split(QLatin1Char(' ')); }
};

using AdminActions = std::vector<AdminAction>;

constexpr auto Make = OpenFolder::Missing::Make;
constexpr auto Refuse = OpenFolder::Missing::Refuse;

void listUsers(OpenFolder &folder, const QStringList &, const QCommandLineParser &)
{
    const QList<User> users = Users(folder.database).list();
    for (const User &user : users)
        printLine(QStringLiteral("%1  %2").arg(user.id, user.name));
}

void renewToken(OpenFolder &folder, const QStringList &words, const QCommandLineParser &)
{
    Users users(folder.database);
    printLine(users.renewToken(users.require(words.at(0))));
}

void revokeToken(OpenFolder &folder, const QStringList &words, const QCommandLineParser &)
{
    Users users(folder.database);
    users.revokeToken(users.require(words.at(0)));
}

void removeUser(OpenFolder &folder, const QStringList &words, const QCommandLineParser &)
{
    Users users(folder.database);
    users.remove(users.require(words.at(0)));
}

void setRole(OpenFolder &folder, const QStringList &words, const QCommandLineParser &)
{
    const User user = Users(folder.database).require(words.at(1));
    Projects(folder.database).setRole(words.at(0), user, words.at(2));
}

void listShares(OpenFolder &folder, const QStringList &, const QCommandLineParser &options)
{
    Shares shares(folder.database);
    const QList<Share> list = shares.list(options.value(QStringLiteral("project")), QString());
    for (const Share &share : list) {
        QStringList names;
        const QList<Document> documents = shares.documents(share);
        for (const Document &document : documents)
            names.append(document.name);
        const QString end = share.expiredAt ? timeText(*share.expiredAt) : QStringLiteral("never");
        printLine(QStringLiteral("%1  %2  ends %3  %4")
                      .arg(share.id, share.projectId, end, names.join(QStringLiteral(", "))));
    }
}

void revokeShare(OpenFolder &folder, const QStringList &words, const QCommandLineParser &)
{
    if (!Shares(folder.database).remove(words.at(0))) {
        throw std::runtime_error(
            QStringLiteral("There is no share %1.").arg(words.at(0)).toStdString());
    }
}

const AdminActions &userActions()
{
    static const AdminActions actions{
        {"user add NAME", "adds a user and prints the access token, which is not kept", Make,
         [](OpenFolder &folder, const QStringList &words, const QCommandLineParser &) {
             printLine(Users(folder.database).add(words.at(0)));
         }},
        {"user list", "prints the users", Refuse, listUsers},
        {"user token NAME", "prints a new access token; the old one is void", Refuse, renewToken},
        {"user revoke NAME", "makes the access token void", Refuse, revokeToken},
        {"user remove NAME", "removes the user with token, roles, marks and shares; documents stay",
         Refuse, removeUser},
    };
    return actions;
}

const AdminActions &projectActions()
{
    static const AdminActions actions{
        {"project add ID", "adds a project", Make,
         [](OpenFolder &folder, const QStringList &words, const QCommandLineParser &options) {
             Projects(folder.database).add(words.at(0), options.value(QStringLiteral("name")));
         }},
    };
    return actions;
}

const AdminActions &roleActions()
{
    static const AdminActions actions{
        {"role set PROJECT USER ROLE", "ROLE is owner, editor, contributor, viewer or none", Refuse,
         setRole},
    };
    return actions;
}

const AdminActions &shareActions()
{
    static const AdminActions actions{
        {"share list", "prints the shares, the newest first", Refuse, listShares},
        {"share revoke ID", "ends a share", Refuse, revokeShare},
    };
    return actions;
}

QString descriptionOf(const AdminActions &actions)
{
    QStringList lines;
    for (const AdminAction &action : actions)
        lines.append(
            QStringLiteral("%1   %2").arg(QLatin1String(action.usage), QLatin1String(action.help)));
    return lines.join(QLatin1Char('\n'));
}

QString usageOf(const AdminActions &actions)
{
    QStringList usages;
    for (const AdminAction &action : actions)
        usages.append(QLatin1String(action.usage) + QStringLiteral(" --data DIR"));
    return usages.join(QStringLiteral(", or ")) + QLatin1Char('.');
}

int runAction(const AdminActions &actions, const QList<QCommandLineOption> &options,
              const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(descriptionOf(actions));
    parser.addOptions(dataOptions());
    parser.addOptions(options);
    int code = 0;
    if (!parseArguments(parser, arguments, &code))
        return code;
    const QStringList words = parser.positionalArguments();
    for (const AdminAction &action : actions) {
        if (action.words().value(1) != words.value(0) || action.words().size() - 1 != words.size())
            continue;
        return withFolder(parser, action.missing, [&](OpenFolder &folder) {
            action.run(folder, words.mid(1), parser);
            return 0;
        });
    }
    return wrongUse(usageOf(actions));
}

} // namespace

int runUser(const QStringList &arguments)
{
    return runAction(userActions(), {}, arguments);
}

int runProject(const QStringList &arguments)
{
    return runAction(
        projectActions(),
        {{QStringLiteral("name"), QStringLiteral("The name shown to people; the id without it."),
          QStringLiteral("TEXT")}},
        arguments);
}

int runRole(const QStringList &arguments)
{
    return runAction(roleActions(), {}, arguments);
}

int runShare(const QStringList &arguments)
{
    return runAction(shareActions(),
                     {{QStringLiteral("project"), QStringLiteral("Only the shares of one project."),
                       QStringLiteral("ID")}},
                     arguments);
}

} // namespace service
