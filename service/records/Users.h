#pragma once

#include <service/records/Permissions.h>

#include <QList>
#include <QString>

#include <optional>

namespace service {

class Database;

//! \brief Who asks.
struct User
{
    QString id;
    QString name;
    bool isLocal = false; //!< the built-in user of a data folder without users
};

struct Membership
{
    QString projectId;
    QString projectName;
    Role role = Role::None;
};

//! \brief Users, projects and who is what in which. Functions throw HttpError with a sentence.
class Users
{
public:
    explicit Users(Database &database);

    //! Whether there are users, so that everybody needs a token.
    bool haveTokens();
    std::optional<User> findByToken(const QString &token);
    QList<User> list();

    //! \return the access token, which is told this one time and never again
    QString add(const QString &name);

    void addProject(const QString &id, const QString &name);
    //! Makes the project when it is missing, for the data folder without users.
    void ensureProject(const QString &id);
    bool projectExists(const QString &id);
    void setRole(const QString &projectId, const QString &userName, const QString &role);

    QList<Membership> projectsOf(const User &user);
    Role roleIn(const QString &projectId, const User &user);

private:
    Database &m_database;
};

} // namespace service
