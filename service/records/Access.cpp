#include <service/records/Access.h>

#include <service/records/DocumentTree.h>
#include <service/records/Names.h>
#include <service/records/ServiceError.h>

#include <algorithm>

namespace service {

namespace {

[[noreturn]] void refuse(Action action)
{
    throw ServiceError(Refusal::Forbidden,
                       QStringLiteral("Your role in the project does not allow this (%1).")
                           .arg(actionKey(action)));
}

} // namespace

Access::Access(Database &database, const User &user)
    : m_database(database), m_projects(database), m_user(user)
{}

bool Access::may(const QString &projectId, Action action)
{
    return roleAllows(role(projectId), action);
}

bool Access::may(const Document &document, Action action)
{
    const Role own = role(document.projectId);
    if (roleAllows(own, action))
        return true;
    if (document.createdBy != m_user.id || !roleAllows(own, selfAction(action)))
        return false;
    return action != Action::Delete || !document.isFolder()
        || DocumentTree(m_database).createdAllBelow(document, m_user.id);
}

void Access::require(const QString &projectId, Action action)
{
    requireValidProjectId(projectId);
    if (may(projectId, action))
        return;
    // Without users a project is created with its first document.
    if (!m_user.isLocal && !m_projects.exists(projectId))
        throw ServiceError(Refusal::NotFound,
                           QStringLiteral("There is no project %1.").arg(projectId));
    refuse(action);
}

void Access::require(const Document &document, Action action)
{
    if (!may(document, action))
        refuse(action);
}

void Access::requireAnywhere(Action action)
{
    const QList<Membership> memberships = m_projects.of(m_user);
    const bool isAllowed = m_user.isLocal
        || std::any_of(memberships.begin(), memberships.end(),
                       [action](const Membership &m) { return roleAllows(m.role, action); });
    if (!isAllowed) {
        throw ServiceError(Refusal::Forbidden,
                           QStringLiteral("No project gives you a role that allows this (%1).")
                               .arg(actionKey(action)));
    }
}

Role Access::role(const QString &projectId)
{
    const auto known = m_roles.constFind(projectId);
    if (known != m_roles.constEnd())
        return known.value();
    const Role found = m_projects.roleIn(projectId, m_user);
    m_roles.insert(projectId, found);
    return found;
}

} // namespace service
