#pragma once

#include <document_model/VellDocument.h>

#include <QList>

namespace velldoc {

class Context;

//! \brief One of the user's marks on documents: how it is listed and set.
struct Mark
{
    QList<VellDocument> (*list)(Context &context);
    bool (*set)(const QString &id, bool isOn);
};

//! The three commands for marks: "list" (or nothing), "add PATH..." and "remove PATH...".
//! \throws Failure
void runMarkCommand(Context &context, const Mark &mark);

} // namespace velldoc
