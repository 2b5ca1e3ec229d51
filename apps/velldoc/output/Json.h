#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

struct VellDocument;

namespace velldoc {

//! \file
//! \brief The stable form of --json, described in the manual page: keys are added, never renamed.

//! \param path where it stands, when the command knows it; left out when it is empty
QJsonObject documentJson(const VellDocument &document, const QString &path = {});

//! An entry of a document's history. \param number 1 for the oldest
QJsonObject versionJson(const VellDocument &version, int number);

} // namespace velldoc
