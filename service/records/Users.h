#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace service {

class Database;

//! \brief A user of the service.
struct User
{
    QString id;
    QString name;
    bool isLocal = false; //!< the built-in user of a data folder without users

    //! Returns the built-in user.
    static User local();
};

//! \brief The table of users and of the hashes of their access tokens. Functions throw ServiceError.
class Users
{
public:
    explicit Users(Database &database);

    //! Returns true if there is or was a user other than the built-in one: then every request needs a token, even if the last user was
    //! removed.
    bool isTokenNeeded();
    std::optional<User> findByToken(const QString &token);
    QList<User> list();
    //! Returns the user with that name.
    User require(const QString &name);

    //! \return the access token, which cannot be read again
    QString add(const QString &name);

    //! Replaces the access token of the user. \return the new one
    QString renewToken(const User &user);
    //! Removes the access token of the user.
    void revokeToken(const User &user);

    //! Removes the token, the roles, the marks and the shares of the user. Documents and the id are kept; the name can be used again.
    void remove(const User &user);

private:
    void setToken(const User &user, const QString &token);

    Database &m_database;
};

} // namespace service
