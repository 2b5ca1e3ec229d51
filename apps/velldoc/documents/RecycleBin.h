#pragma once

#include <document_model/VellDocument.h>

#include <QList>
#include <QStringList>

namespace velldoc {

class Context;

//! Returns the documents that were deleted themselves, the last deleted first. \throws Failure
QList<VellDocument> readBin(Context &context);

//! Returns the names in the recycle bin, each once; "id:…" for names that occur several times. \throws Failure
QStringList namesInBin(Context &context);

} // namespace velldoc
