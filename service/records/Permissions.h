#pragma once

#include <QList>
#include <QString>

namespace service {

enum class Role { None, Viewer, Contributor, Editor, Owner };

//! What a user may do in a project. The "self" actions are those on documents that the user has created.
enum class Action {
    Read,
    Download,
    Upload,
    Edit,
    EditSelf,
    Delete,
    DeleteSelf,
    Share,
    Purge, //!< empty the recycle bin for good
};

//! The one table that decides what is answered to "may I" and what is then allowed.
bool roleAllows(Role role, Action action);

//! "none" for a user who is not a member.
QString roleName(Role role);
//! Role::None for a word that is no role.
Role roleFromName(const QString &name);

//! The word of an action in requests and answers, such as "edit-self".
QString actionKey(Action action);
//! \return false for an unknown word.
bool actionFromKey(const QString &key, Action *action);
//! Those that the rights of a document are told for.
const QList<Action> &documentActions();

//! Edit → EditSelf, Delete → DeleteSelf; others as they are.
Action selfAction(Action action);

} // namespace service
