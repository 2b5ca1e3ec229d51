#pragma once

#include <service/records/Document.h>
#include <service/records/Permissions.h>
#include <service/records/Projects.h>
#include <service/records/Users.h>

#include <QHash>

namespace service {

class Database;

//! \brief What the asking user may do. Answers and refusals both come from roleAllows().
class Access
{
public:
    Access(Database &database, const User &user);

    const User &user() const { return m_user; }

    bool may(const QString &projectId, Action action);
    //! On one document: by the role, or by the role's "self" action on what the user has created. Deleting a
    //! folder counts as own only when everything below it is.
    bool may(const Document &document, Action action);

    //! \throws ServiceError for an unknown project, or a role that does not allow it
    void require(const QString &projectId, Action action);
    //! \throws ServiceError for a role that does not allow it
    void require(const Document &document, Action action);

    //! \throws ServiceError if no project gives the user a role that allows it
    void requireAnywhere(Action action);

private:
    Role role(const QString &projectId);

    Database &m_database;
    Projects m_projects;
    User m_user;
    QHash<QString, Role> m_roles; //!< asked once for each request
};

} // namespace service
