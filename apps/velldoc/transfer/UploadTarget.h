#pragma once

#include <document_model/VellDocument.h>
#include <velldoc/documents/RemotePath.h>

#include <QString>

namespace velldoc {

class Context;
class OwnTargets;

//! \brief Where the uploads of a command go.
struct UploadTarget
{
    VellDocument folder;
    RemotePath path; //!< of the folder
    QString name; //!< if it is empty, each source keeps its name
    bool isNew = false; //!< the target does not exist yet
};

//! Returns the target \a text, as cp does: an existing folder; otherwise a single source gets the last name of the path.
//! \param ownTargets null for sources that do not create a folder
//! \throws Failure
UploadTarget findUploadTarget(Context &context, const QString &text, int sourceCount,
                              const OwnTargets *ownTargets);

} // namespace velldoc
