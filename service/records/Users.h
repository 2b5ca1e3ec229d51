#pragma once

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

    //! The built-in user.
    static User local();
};

//! \brief The users and their access tokens, of which only the hashes are kept. Functions throw ServiceError with a
//! sentence.
class Users
{
public:
    explicit Users(Database &database);

    //! Returns true once there has been a user: from then on everybody needs a token, also when the last user
    //! was removed.
    bool haveTokens();
    std::optional<User> findByToken(const QString &token);
    QList<User> list();
    //! The user of that name.
    User require(const QString &name);

    //! \return the access token, which is told this one time and never again
    QString add(const QString &name);

    //! Gives the user a new token instead of the present one. \return it
    QString renewToken(const User &user);
    //! Leaves the user without a token.
    void revokeToken(const User &user);

    //! Takes the user's token, roles, marks and shares. What the user has made stays, and so does the id; the name is
    //! free again.
    void remove(const User &user);

private:
    void setToken(const User &user, const QString &token);

    Database &m_database;
};

} // namespace service
