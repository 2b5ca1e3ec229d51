#include <service/records/Projects.h>

#include <service/records/Names.h>
#include <service/records/ServiceError.h>
#include <service/records/Times.h>
#include <service/records/Users.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

constexpr int MaxNameBytes = 255;

} // namespace

Projects::Projects(Database &database) : m_database(database) {}

void Projects::add(const QString &id, const QString &name)
{
    requireValidProjectId(id);
    requireShortText(name, QStringLiteral("The project's name"), MaxNameBytes);
    Transaction transaction(m_database);
    if (exists(id)) {
        throw ServiceError(Refusal::Conflict,
                           QStringLiteral("There is a project %1 already.").arg(id));
    }
    execute(m_database,
            QStringLiteral("INSERT INTO project (id, name, created_at) VALUES (?, ?, ?)"),
            {id, name.isEmpty() ? id : name, m_database.nowMs()});
    transaction.commit();
}

void Projects::ensure(const QString &id)
{
    requireValidProjectId(id);
    execute(m_database,
            QStringLiteral("INSERT INTO project (id, name, created_at) VALUES (?, ?, ?) "
                           "ON CONFLICT DO NOTHING"),
            {id, id, m_database.nowMs()});
}

bool Projects::exists(const QString &id)
{
    return Statement(m_database, QStringLiteral("SELECT 1 FROM project WHERE id = ?"), {id}).next();
}

void Projects::setRole(const QString &projectId, const User &user, const QString &role)
{
    const Role newRole = roleFromName(role);
    if (newRole == Role::None && role != roleName(Role::None)) {
        throw ServiceError(
            Refusal::Invalid,
            QStringLiteral("%1 is no role; there are owner, editor, contributor, viewer and none.")
                .arg(role));
    }
    Transaction transaction(m_database);
    if (!exists(projectId)) {
        throw ServiceError(Refusal::NotFound,
                           QStringLiteral("There is no project %1.").arg(projectId));
    }
    if (newRole == Role::None) {
        execute(m_database,
                QStringLiteral("DELETE FROM member WHERE project_id = ? AND user_id = ?"),
                {projectId, user.id});
    } else {
        execute(
            m_database,
            QStringLiteral("INSERT INTO member (project_id, user_id, role) VALUES (?, ?, ?) "
                           "ON CONFLICT (project_id, user_id) DO UPDATE SET role = excluded.role"),
            {projectId, user.id, role});
    }
    transaction.commit();
}

QList<Membership> Projects::of(const User &user)
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

QList<Member> Projects::members(const QString &projectId)
{
    Statement found(m_database,
                    QStringLiteral("SELECT u.id, u.name, m.role FROM member m "
                                   "JOIN \"user\" u ON u.id = m.user_id "
                                   "WHERE m.project_id = ? ORDER BY u.name"),
                    {projectId});
    QList<Member> members;
    while (found.next())
        members.append({found.text(0), found.text(1), roleFromName(found.text(2))});
    return members;
}

Role Projects::roleIn(const QString &projectId, const User &user)
{
    if (user.isLocal)
        return Role::Owner;
    Statement found(m_database,
                    QStringLiteral("SELECT role FROM member WHERE project_id = ? AND user_id = ?"),
                    {projectId, user.id});
    return found.next() ? roleFromName(found.text(0)) : Role::None;
}

} // namespace service
