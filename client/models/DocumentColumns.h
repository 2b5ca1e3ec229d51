#pragma once

#include <document_model/VellDocument.h>
#include <document_service/VellDocumentConditon.h>

#include <QString>

class VellSession;

//! \brief The columns of VellDocumentModel: their texts, and the fields by which the service sorts them.
namespace document_columns {

QString title(int column);
QString text(const VellDocument &document, int column, VellSession *session);

//! Folders first, then by \a column.
VellDocumentSort sortBy(int column, Qt::SortOrder order);

//! Returns true if \a a and \a b may have different places in a list sorted by \a column; -1 for the order of the service.
bool isSortedApart(const VellDocument &a, const VellDocument &b, int column);

} // namespace document_columns
