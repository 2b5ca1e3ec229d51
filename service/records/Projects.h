#pragma once

#include <service/records/Permissions.h>

#include <QList>
#include <QString>

namespace service {

class Database;
struct User;

//! The role of a user in a project.
struct Membership
{
    QString projectId;
    QString projectName;
    Role role = Role::None;
};

//! A user with a role in a project.
struct Member
{
    QString userId;
    QString userName;
    Role role = Role::None;
};

//! \brief The tables of projects and of roles. Functions throw ServiceError.
class Projects
{
public:
    explicit Projects(Database &database);

    void add(const QString &id, const QString &name);
    //! Creates the project if it is missing, in a data folder without users.
    void ensure(const QString &id);
    bool exists(const QString &id);

    //! \param role "owner", "editor", "contributor", "viewer", or "none" to end the membership
    void setRole(const QString &projectId, const User &user, const QString &role);

    QList<Membership> of(const User &user);
    //! Returns the members of the project, sorted by name.
    QList<Member> members(const QString &projectId);
    Role roleIn(const QString &projectId, const User &user);

private:
    Database &m_database;
};

} // namespace service
