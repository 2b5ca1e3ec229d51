#pragma once

#include <service/records/Document.h>
#include <service/records/Permissions.h>
#include <service/records/Projects.h>
#include <service/records/Users.h>

#include <QHash>

namespace service {

class Database;

//! \brief The rights of the current user. Everything is decided by roleAllows().
class Access
{
public:
    Access(Database &database, const User &user);

    const User &user() const { return m_user; }

    bool may(const QString &projectId, Action action);
    //! Returns true if the role allows the action on the document, or allows its "self" action and the user has created the document.
    //! For deleting a folder the user must also have created everything below it.
    bool may(const Document &document, Action action);

    //! \throws ServiceError if the project is unknown or the role does not allow the action
    void require(const QString &projectId, Action action);
    //! \throws ServiceError if the role does not allow the action
    void require(const Document &document, Action action);

    //! \throws ServiceError if no project gives the user a role that allows it
    void requireAnywhere(Action action);

private:
    Role role(const QString &projectId);

    Database &m_database;
    Projects m_projects;
    User m_user;
    QHash<QString, Role> m_roles; //!< looked up once for each request
};

} // namespace service
