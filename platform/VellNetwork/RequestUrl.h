#pragma once

#include <QString>
#include <QUrl>

//! Converts an address that is not percent-encoded to the URL that transmits all its values unchanged.
//!
//! Scheme and authority do not change; several slashes after them are replaced by one. The path ends at the first `?`, and the rest
//! is the query; `%`, `#` and `+` are data in both. In the query `&` and `=` are separators, except in the JSON object after
//! `where=`: from its `{` to the matching `}` everything is data. If the `}` is missing, this object and all later ones are plain
//! text.
//!
//! Takes time linear in the length of the text.
//! \return an empty URL if the scheme is neither `http` nor `https`, if the authority is invalid, or if the path has a "." or ".."
//!         segment.
QUrl requestUrl(const QString &text);
