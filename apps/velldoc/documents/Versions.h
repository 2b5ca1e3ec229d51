#pragma once

#include <document_model/VellDocument.h>

#include <QList>

namespace velldoc {

class Session;

//! Returns the versions of \a document, newest first. \throws Failure
QList<VellDocument> versionsOf(Session &session, const VellDocument &document);

//! Returns version \a number; 1 is the oldest. \throws Failure if there is none
VellDocument versionOf(Session &session, const VellDocument &document, int number);

} // namespace velldoc
