#pragma once

#include <document_service/VellDocumentConditon.h>
#include <operations/VellOperation.h>

#include <QHash>
#include <QSet>
#include <QString>

class VellSession;

//! Asks the service in which rows of the list of \a condition, ordered by \a sort, the documents \a ids are. The result
//! lacks those that are not in it.
VellResult<QHash<QString, int>> *findRows(VellSession *session,
                                          const VellDocumentConditon &condition,
                                          const VellDocumentSort &sort, const QSet<QString> &ids);
