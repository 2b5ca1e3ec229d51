#pragma once

#include <QString>

struct VellDocument;
class VellSession;

namespace desktop {

//! \brief What the user may do, as far as the client knows it. The service decides.
namespace rights {

//! \name The names of the rights in VellDocument::auths
//! \{
QString download();
QString edit();
QString remove();
QString upload();
//! \}

//! Returns whether the user has the \a right; true if the record does not say.
bool may(const VellDocument &document, const QString &right);

bool isFolder(const VellDocument &document);

//! The user's role in the open project; empty if the service does not tell, and on a service without users.
QString role(const VellSession &session);

//! Returns whether the user may delete for good what is in the recycle bin.
bool mayPurge(const VellSession &session);
bool mayShare(const VellSession &session);

} // namespace rights

} // namespace desktop
