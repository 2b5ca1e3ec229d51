#pragma once

#include <QString>
#include <QUrl>

//! Turns the unencoded text of an address into the URL that carries every value of it unchanged.
//!
//! Scheme and authority stay as they are, of several slashes after them one is left. The path runs to the first `?`, everything behind it is the
//! query; `%`, `#` and `+` are data in both. In the query `&` and `=` separate, except inside the
//! JSON object behind `where=`: from its `{` to the matching `}` everything is data. An object
//! without its `}` is text like any other, and so is every later one.
//!
//! Takes time linear in the length of the text.
//! \return an empty URL when the scheme is neither `http` nor `https`, when the authority is none, or when
//!         the path has a "." or ".." segment.
QUrl requestUrl(const QString &text);
