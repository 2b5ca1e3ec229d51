#pragma once

#include <document_model/VellDocument.h>

#include <QList>
#include <QStringList>

namespace velldoc {

class Context;

//! What was deleted itself, the latest first. \throws Failure
QList<VellDocument> readBin(Context &context);

//! The names of what is in the recycle bin, each once; "id:…" of those whose name several have. \throws Failure
QStringList namesInBin(Context &context);

} // namespace velldoc
