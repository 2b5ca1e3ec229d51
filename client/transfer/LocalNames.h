#pragma once

#include <transfer/TransferRecord.h>

#include <QString>

#include <vector>

//! \file
//! \brief What the names of local files and of documents can be, and the local files of a transfer.

namespace LocalNames {

//! Whether the service takes \a name for a document.
bool isRemoteName(const QString &name);

//! Whether a local file of this system can have the name \a name.
bool isLocalName(const QString &name);

//! The same on Windows: no device, no reserved character, no space or full stop at the end.
bool isWindowsName(const QString &name);

//! What two names have in common that are one on this system's disks.
QString key(const QString &name);

//! \a name with a number before the suffix, "plan(2).dwg", at most 255 bytes long.
QString numbered(const QString &name, int number);

//! Where the content of a download is received: beside its target, with a short name.
QString partPath(const TransferRecord &record);

//! The entries of the folder \a path, each with its size, or with the reason why it cannot be uploaded.
//! \param error set if the folder cannot be read
std::vector<FolderEntry> entriesOf(const QString &path, VellError *error);

//! Puts the file \a from in the place of \a to, also if that is there. \return what went wrong, else an empty text
QString replace(const QString &from, const QString &to);

} // namespace LocalNames
