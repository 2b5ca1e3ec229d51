#pragma once

#include <operations/OperationRun.h>

#include <document_model/VellDocument.h>

#include <QList>
#include <QString>

//! \brief Requests about documents, for the work of operations. All throw OperationFailure.
namespace document_lookup {

//! Returns the document \a id. Throws NotFound if the response is not a document.
VellDocument fetch(OperationRun &run, const QString &id);

//! Returns the entries \a name of the folder \a parentId.
QList<VellDocument> find(OperationRun &run, const QString &parentId, const QString &name);

//! Throws NameTaken if the folder \a parentId has an entry \a name other than \a exceptId.
void requireFreeName(OperationRun &run, const QString &parentId, const QString &name,
                     const QString &exceptId = {});

} // namespace document_lookup
