#pragma once

#include <QString>

namespace service {

//! \throws ServiceError for a name that no document may have: empty, more than 255 bytes of UTF-8, "." or
//! "..", or with a slash, a backslash or a control character in it
void requireValidName(const QString &name);

//! \throws ServiceError for text that cannot be a project's id
void requireValidProjectId(const QString &id);

//! \throws ServiceError for text above \a maxBytes of UTF-8 or with a NUL; \a what names it
void requireShortText(const QString &text, const QString &what, int maxBytes);

//! What follows the last dot, unless that is the first character; as it is written.
QString suffixOf(const QString &name);

} // namespace service
