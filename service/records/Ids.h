#pragma once

#include <QString>

namespace service {

//! Returns a unique id of 24 hexadecimal digits. Ids are sorted by the second in which they were created.
QString newId();

//! Returns a secret of 256 random bits, as 64 hexadecimal digits.
QString newSecret();

//! Returns the hash of a secret that is stored: its SHA-256, as hexadecimal digits.
QString secretHash(const QString &secret);

} // namespace service
