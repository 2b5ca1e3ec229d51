#pragma once

#include <document_model/VellDocument.h>
#include <velldoc/documents/RemotePath.h>

#include <QList>
#include <QStringList>

namespace velldoc {

class Context;

//! \brief A document of the command line.
struct NamedDocument
{
    RemotePath path;
    VellDocument document;
};

//! Returns the documents of the paths \a texts. Names with `*`, `?` and `[...]` are patterns, unless there is an entry with
//! exactly that name; `*` and `?` do not match a dot at the beginning.
//! \throws Failure also for a pattern without a match
QList<NamedDocument> namedDocuments(Context &context, const QStringList &texts);

} // namespace velldoc
