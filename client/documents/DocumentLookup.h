#pragma once

#include <operations/OperationRun.h>

#include <document_model/VellDocument.h>

#include <QList>
#include <QString>

//! \brief Questions to the service, for the work of operations. All throw OperationFailure.
namespace DocumentLookup {

//! The document \a id; NotFound if the service answers with something else.
VellDocument fetch(OperationRun &run, const QString &id);

//! The entries called \a name in the folder \a parentId.
QList<VellDocument> find(OperationRun &run, const QString &parentId, const QString &name);

//! NameTaken if the folder \a parentId has an entry \a name other than \a exceptId.
void requireFreeName(OperationRun &run, const QString &parentId, const QString &name,
                     const QString &exceptId = {});

} // namespace DocumentLookup
