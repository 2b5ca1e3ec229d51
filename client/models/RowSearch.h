#pragma once

#include <document_service/VellDocumentConditon.h>
#include <operations/VellOperation.h>

#include <QHash>
#include <QSet>
#include <QString>

class VellSession;

//! Requests the rows of the documents \a ids in the list of \a condition, ordered by \a sort. The result does not contain documents
//! that are not in the list.
VellResult<QHash<QString, int>> *findRows(VellSession *session,
                                          const VellDocumentConditon &condition,
                                          const VellDocumentSort &sort, const QSet<QString> &ids);
