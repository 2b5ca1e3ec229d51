#include <service/records/Users.h>

#include <service/records/Ids.h>
#include <service/records/Names.h>
#include <service/records/ServiceError.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

QString selectUsers()
{
    return QStringLiteral(
        "SELECT id, name FROM \"user\" WHERE id <> 'local' AND removed_at IS NULL ");
}

} // namespace

User User::local()
{
    return {QStringLiteral("local"), QStringLiteral("local"), true};
}

Users::Users(Database &database) : m_database(database) {}

bool Users::isTokenNeeded()
{
    return Statement(m_database,
                     QStringLiteral("SELECT 1 FROM \"user\" WHERE id <> 'local' LIMIT 1"))
        .next();
}

std::optional<User> Users::findByToken(const QString &token)
{
    Statement found(m_database, selectUsers() + QStringLiteral("AND token_hash = ?"),
                    {secretHash(token)});
    if (!found.next())
        return std::nullopt;
    return User{found.text(0), found.text(1), false};
}

QList<User> Users::list()
{
    QList<User> users;
    Statement found(m_database, selectUsers() + QStringLiteral("ORDER BY name"));
    while (found.next())
        users.append({found.text(0), found.text(1), false});
    return users;
}

User Users::require(const QString &name)
{
    Statement found(m_database, selectUsers() + QStringLiteral("AND name = ?"), {name});
    if (!found.next()) {
        throw ServiceError(Refusal::NotFound,
                           QStringLiteral("There is no user called %1.").arg(name));
    }
    return {found.text(0), found.text(1), false};
}

QString Users::add(const QString &name)
{
    requireValidName(name);
    Transaction transaction(m_database);
    Statement taken(m_database, QStringLiteral("SELECT 1 FROM \"user\" WHERE name = ?"), {name});
    if (taken.next())
        throw ServiceError(Refusal::Conflict,
                           QStringLiteral("There is a user called %1 already.").arg(name));
    taken.finish();
    QString token = newSecret();
    execute(m_database,
            QStringLiteral(
                "INSERT INTO \"user\" (id, name, token_hash, created_at) VALUES (?, ?, ?, ?)"),
            {newId(), name, secretHash(token), m_database.nowMs()});
    transaction.commit();
    return token;
}

QString Users::renewToken(const User &user)
{
    QString token = newSecret();
    setToken(user, token);
    return token;
}

void Users::revokeToken(const User &user)
{
    setToken(user, QString());
}

void Users::remove(const User &user)
{
    Transaction transaction(m_database);
    for (const char *table : {"member", "mark", "download"}) {
        execute(m_database,
                QStringLiteral("DELETE FROM %1 WHERE user_id = ?").arg(QLatin1String(table)),
                {user.id});
    }
    execute(m_database, QStringLiteral("DELETE FROM share WHERE created_by = ?"), {user.id});
    execute(m_database,
            QStringLiteral("UPDATE \"user\" SET token_hash = NULL, removed_at = ?, name = ? "
                           "WHERE id = ?"),
            {m_database.nowMs(), QStringLiteral("removed/") + user.id, user.id});
    transaction.commit();
}

void Users::setToken(const User &user, const QString &token)
{
    if (user.isLocal) {
        throw ServiceError(Refusal::Conflict,
                           QStringLiteral("Without users nobody needs a token."));
    }
    Transaction transaction(m_database);
    execute(m_database, QStringLiteral("UPDATE \"user\" SET token_hash = ? WHERE id = ?"),
            {token.isEmpty() ? QVariant() : QVariant(secretHash(token)), user.id});
    transaction.commit();
}

} // namespace service
