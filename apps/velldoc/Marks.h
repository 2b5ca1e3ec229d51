#pragma once

#include <documents/VellDocuments.h>

#include <QList>

namespace velldoc {

class Context;

//! \brief One of the user's marks on documents: how it is listed and set.
struct Mark
{
    QList<VellDocument> (*list)(Context &context);
    VellResult<bool> *(VellDocuments::*set)(const QString &id, bool on);
};

//! The three commands for marks: "list" (or nothing), "add PATH..." and "remove PATH...".
//! \throws Failure
void runMarkCommand(Context &context, const Mark &mark);

} // namespace velldoc
