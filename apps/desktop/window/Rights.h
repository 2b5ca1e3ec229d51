#pragma once

#include <QString>

struct VellDocument;
class VellSession;

namespace desktop {

//! \brief The rights of the user, as known to the client. The service decides.
namespace rights {

//! \name The names of the rights in VellDocument::auths
//! \{
QString download();
QString edit();
QString remove();
QString upload();
//! \}

//! Returns true if the user has the \a right, or the record does not contain it.
bool may(const VellDocument &document, const QString &right);

bool isFolder(const VellDocument &document);

//! Returns the role of the user in the open project; empty if the service does not report it or has no users.
QString role(const VellSession &session);

//! Returns true if the user may empty the recycle bin.
bool mayPurge(const VellSession &session);
bool mayShare(const VellSession &session);

} // namespace rights

} // namespace desktop
