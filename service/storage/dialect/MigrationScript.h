#pragma once

#include <QByteArray>
#include <QString>

namespace service {

//! The statements that bring a database of \a kind, "sqlite" or "postgresql", from the schema before to \a version.
//! \throws DatabaseError if there is none
QByteArray migrationScript(const QString &kind, int version);

} // namespace service
