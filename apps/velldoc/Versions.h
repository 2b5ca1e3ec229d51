#pragma once

#include <document_model/VellDocument.h>

#include <QList>

namespace velldoc {

class Session;

//! The entries of the history of \a document, newest first. \throws Failure
QList<VellDocument> versionsOf(Session &session, const VellDocument &document);

//! The entry of version \a number, 1 being the oldest. \throws Failure when there is none
VellDocument versionOf(Session &session, const VellDocument &document, int number);

} // namespace velldoc
