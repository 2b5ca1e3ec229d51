#pragma once

#include <document_model/VellDocument.h>
#include <velldoc/RemotePath.h>

#include <QList>
#include <QStringList>

namespace velldoc {

class Context;

//! \brief A document that the command line names.
struct NamedDocument
{
    RemotePath path;
    VellDocument document;
};

//! The documents that \a texts name. Names with `*`, `?` and `[...]` stand for all that fit, unless there is one that is called like
//! that; `*` and `?` do not stand for a dot at the beginning.
//! \throws Failure also for a pattern that nothing fits
QList<NamedDocument> namedDocuments(Context &context, const QStringList &texts);

} // namespace velldoc
