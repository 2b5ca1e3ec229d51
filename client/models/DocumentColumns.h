#pragma once

#include <document_model/VellDocument.h>
#include <document_service/VellDocumentConditon.h>

#include <QString>

class VellSession;

//! \brief The columns of VellDocumentModel: what each shows, and by what the service sorts it.
namespace DocumentColumns {

QString title(int column);
QString text(const VellDocument &document, int column, VellSession *session);

//! Folders first, then by \a column.
VellDocumentSort sortBy(int column, Qt::SortOrder order);

//! Whether \a a and \a b may be in different places of a list sorted by \a column; -1 for the service's order.
bool isSortedApart(const VellDocument &a, const VellDocument &b, int column);

} // namespace DocumentColumns
