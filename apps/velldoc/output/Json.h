#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

struct VellDocument;

namespace velldoc {

//! \file
//! \brief The format of --json, described in the manual page: keys may be added, but never renamed.

//! \param path the path, if the command knows it; omitted if it is empty
QJsonObject documentJson(const VellDocument &document, const QString &path = {});

//! Returns a version of a document. \param number 1 for the oldest
QJsonObject versionJson(const VellDocument &version, int number);

} // namespace velldoc
