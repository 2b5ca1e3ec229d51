#pragma once

#include <QString>

namespace service {

//! 24 hexadecimal digits, unique; later ids sort behind earlier ones of another second.
QString newId();

//! A secret of 256 random bits, as 64 hexadecimal digits.
QString newSecret();

//! What is stored of a secret: its SHA-256, as hexadecimal digits.
QString secretHash(const QString &secret);

} // namespace service
