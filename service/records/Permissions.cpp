#include <service/records/Permissions.h>

#include <algorithm>
#include <array>

namespace service {

namespace {

struct ActionRow
{
    Action action;
    const char *key;
    Role lowest; //!< the action is allowed for this role and higher ones
};

constexpr std::array<ActionRow, 9> ActionTable{{
    {Action::Read, "read", Role::Viewer},
    {Action::Download, "download", Role::Viewer},
    {Action::Upload, "upload", Role::Contributor},
    {Action::EditSelf, "edit-self", Role::Contributor},
    {Action::DeleteSelf, "delete-self", Role::Contributor},
    {Action::Share, "share", Role::Contributor},
    {Action::Edit, "edit", Role::Editor},
    {Action::Delete, "delete", Role::Editor},
    {Action::Purge, "purge", Role::Owner},
}};

struct RoleRow
{
    Role role;
    const char *name;
};

constexpr std::array<RoleRow, 5> RoleTable{{
    {Role::None, "none"},
    {Role::Viewer, "viewer"},
    {Role::Contributor, "contributor"},
    {Role::Editor, "editor"},
    {Role::Owner, "owner"},
}};

const ActionRow &rowOf(Action action)
{
    return *std::find_if(ActionTable.begin(), ActionTable.end(),
                         [action](const ActionRow &row) { return row.action == action; });
}

} // namespace

bool roleAllows(Role role, Action action)
{
    return role >= rowOf(action).lowest;
}

QString roleName(Role role)
{
    const auto *const found = std::find_if(RoleTable.begin(), RoleTable.end(),
                                           [role](const RoleRow &row) { return row.role == role; });
    return QString::fromLatin1(found->name);
}

Role roleFromName(const QString &name)
{
    for (const RoleRow &row : RoleTable) {
        if (name == QLatin1String(row.name))
            return row.role;
    }
    return Role::None;
}

QString actionKey(Action action)
{
    return QString::fromLatin1(rowOf(action).key);
}

bool actionFromKey(const QString &key, Action *action)
{
    for (const ActionRow &row : ActionTable) {
        if (key == QLatin1String(row.key)) {
            *action = row.action;
            return true;
        }
    }
    return false;
}

const QList<Action> &documentActions()
{
    static const QList<Action> actions{Action::Delete, Action::DeleteSelf, Action::Download,
                                       Action::Edit,   Action::EditSelf,   Action::Upload};
    return actions;
}

Action selfAction(Action action)
{
    if (action == Action::Edit)
        return Action::EditSelf;
    return action == Action::Delete ? Action::DeleteSelf : action;
}

} // namespace service
