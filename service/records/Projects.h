#pragma once

#include <service/records/Permissions.h>

#include <QList>
#include <QString>

namespace service {

class Database;
struct User;

//! What a user is in a project.
struct Membership
{
    QString projectId;
    QString projectName;
    Role role = Role::None;
};

//! A user who is something in a project.
struct Member
{
    QString userId;
    QString userName;
    Role role = Role::None;
};

//! \brief The projects and who is what in which. Functions throw ServiceError with a sentence.
class Projects
{
public:
    explicit Projects(Database &database);

    void add(const QString &id, const QString &name);
    //! Makes the project when it is missing, for the data folder without users.
    void ensure(const QString &id);
    bool exists(const QString &id);

    //! \param role "owner", "editor", "contributor", "viewer", or "none" to end the membership
    void setRole(const QString &projectId, const User &user, const QString &role);

    QList<Membership> of(const User &user);
    //! The members of the project, by name.
    QList<Member> members(const QString &projectId);
    Role roleIn(const QString &projectId, const User &user);

private:
    Database &m_database;
};

} // namespace service
