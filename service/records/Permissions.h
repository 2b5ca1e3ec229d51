#pragma once

#include <QList>
#include <QString>

namespace service {

enum class Role { None, Viewer, Contributor, Editor, Owner };

//! The actions in a project. The "self" actions are for documents that the user has created.
enum class Action {
    Read,
    Download,
    Upload,
    Edit,
    EditSelf,
    Delete,
    DeleteSelf,
    Share,
    Purge, //!< delete documents in the recycle bin permanently
};

//! Returns true if \a role allows \a action. All checks and all rights that clients get are derived from this table.
bool roleAllows(Role role, Action action);

//! Returns the name of a role, "none" for a user who is not a member.
QString roleName(Role role);
//! Returns Role::None for an unknown name.
Role roleFromName(const QString &name);

//! Returns the name of an action in requests and responses, such as "edit-self".
QString actionKey(Action action);
//! \return false for an unknown name.
bool actionFromKey(const QString &key, Action *action);
//! Returns the actions in the rights of a document.
const QList<Action> &documentActions();

//! Edit → EditSelf, Delete → DeleteSelf; other actions unchanged.
Action selfAction(Action action);

} // namespace service
