#pragma once

#include <QString>

namespace service {

//! \throws ServiceError for an invalid name of a document: empty, more than 255 bytes of UTF-8, "." or "..", or one with a slash, a
//! backslash or a control character
void requireValidName(const QString &name);

//! \throws ServiceError for an invalid id of a project
void requireValidProjectId(const QString &id);

//! \throws ServiceError, with \a what in its sentence, for a text with more than \a maxBytes of UTF-8 or with a NUL
void requireShortText(const QString &text, const QString &what, int maxBytes);

//! Returns the text after the last dot, unless that is the first character. Upper and lower case are kept.
QString suffixOf(const QString &name);

} // namespace service
