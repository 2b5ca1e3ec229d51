#pragma once

#include <documents/VellDocuments.h>

#include <QList>

namespace velldoc {

class Context;

//! \brief A mark of the user on documents, with functions that list and set it.
struct Mark
{
    QList<VellDocument> (*list)(Context &context);
    VellResult<bool> *(VellDocuments::*set)(const QString &id, bool on);
};

//! Runs the three commands for marks: "list" (or nothing), "add PATH..." and "remove PATH...".
//! \throws Failure
void runMarkCommand(Context &context, const Mark &mark);

} // namespace velldoc
