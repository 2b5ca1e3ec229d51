#include <service/records/Users.h>

#include <service/http/HttpMessages.h>
#include <service/records/Ids.h>
#include <service/records/Names.h>
#include <service/records/Times.h>
#include <service/storage/Statement.h>

namespace service {

Users::Users(Database &database) : m_database(database) {}

bool Users::haveTokens()
{
    Statement found(m_database,
                    QStringLiteral("SELECT 1 FROM user WHERE token_hash IS NOT NULL LIMIT 1"));
    return found.next();
}

std::optional<User> Users::findByToken(const QString &token)
{
    Statement found(m_database, QStringLiteral("SELECT id, name FROM user WHERE token_hash = ?"),
                    {secretHash(token)});
    if (!found.next())
        return std::nullopt;
    return User{found.text(0), found.text(1), false};
}

QList<User> Users::list()
{
    QList<User> users;
    Statement found(
        m_database,
        QStringLiteral("SELECT id, name FROM user WHERE token_hash IS NOT NULL ORDER BY name"));
    while (found.next())
        users.append({found.text(0), found.text(1), false});
    return users;
}

QString Users::add(const QString &name)
{
    requireValidName(name);
    Transaction transaction(m_database);
    Statement taken(m_database, QStringLiteral("SELECT 1 FROM user WHERE name = ?"), {name});
    if (taken.next())
        throw HttpError(409, QStringLiteral("There is a user called %1 already.").arg(name));
    taken.finish();
    QString token = newSecret();
    execute(
        m_database,
        QStringLiteral("INSERT INTO user (id, name, token_hash, created_at) VALUES (?, ?, ?, ?)"),
        {newId(), name, secretHash(token), nowMs()});
    transaction.commit();
    return token;
}

void Users::addProject(const QString &id, const QString &name)
{
    requireValidProjectId(id);
    requireShortText(name, QStringLiteral("The project's name"), 255);
    Transaction transaction(m_database);
    if (projectExists(id))
        throw HttpError(409, QStringLiteral("There is a project %1 already.").arg(id));
    execute(m_database,
            QStringLiteral("INSERT INTO project (id, name, created_at) VALUES (?, ?, ?)"),
            {id, name.isEmpty() ? id : name, nowMs()});
    transaction.commit();
}

void Users::ensureProject(const QString &id)
{
    requireValidProjectId(id);
    execute(m_database,
            QStringLiteral("INSERT OR IGNORE INTO project (id, name, created_at) VALUES (?, ?, ?)"),
            {id, id, nowMs()});
}

bool Users::projectExists(const QString &id)
{
    Statement found(m_database, QStringLiteral("SELECT 1 FROM project WHERE id = ?"), {id});
    return found.next();
}

void Users::setRole(const QString &projectId, const QString &userName, const QString &role)
{
    const Role newRole = roleFromName(role);
    if (newRole == Role::None && role != roleName(Role::None)) {
        throw HttpError(
            400,
            QStringLiteral("%1 is no role; there are owner, editor, contributor, viewer and none.")
                .arg(role));
    }
    Transaction transaction(m_database);
    if (!projectExists(projectId))
        throw HttpError(404, QStringLiteral("There is no project %1.").arg(projectId));
    Statement user(m_database,
                   QStringLiteral("SELECT id FROM user WHERE name = ? AND token_hash IS NOT NULL"),
                   {userName});
    if (!user.next())
        throw HttpError(404, QStringLiteral("There is no user called %1.").arg(userName));
    const QString userId = user.text(0);
    user.finish();
    if (newRole == Role::None) {
        execute(m_database,
                QStringLiteral("DELETE FROM member WHERE project_id = ? AND user_id = ?"),
                {projectId, userId});
    } else {
        execute(m_database,
                QStringLiteral("INSERT OR REPLACE INTO member (project_id, user_id, role) "
                               "VALUES (?, ?, ?)"),
                {projectId, userId, role});
    }
    transaction.commit();
}

QList<Membership> Users::projectsOf(const User &user)
{
    const QString everything = QStringLiteral("SELECT id, name, 'owner' FROM project ORDER BY id");
    const QString own = QStringLiteral("SELECT p.id, p.name, m.role FROM member m "
                                       "JOIN project p ON p.id = m.project_id "
                                       "WHERE m.user_id = ? ORDER BY p.id");
    Statement found(m_database, user.isLocal ? everything : own,
                    user.isLocal ? QVariantList() : QVariantList{user.id});
    QList<Membership> memberships;
    while (found.next())
        memberships.append({found.text(0), found.text(1), roleFromName(found.text(2))});
    return memberships;
}

Role Users::roleIn(const QString &projectId, const User &user)
{
    if (user.isLocal)
        return Role::Owner;
    Statement found(m_database,
                    QStringLiteral("SELECT role FROM member WHERE project_id = ? AND user_id = ?"),
                    {projectId, user.id});
    return found.next() ? roleFromName(found.text(0)) : Role::None;
}

} // namespace service
