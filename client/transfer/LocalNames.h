#pragma once

#include <transfer/TransferRecord.h>

#include <QString>

#include <vector>

//! \file
//! \brief Valid names of local files and of documents, and the local files of a transfer.

namespace local_names {

//! Returns true if \a name is valid for a document.
bool isRemoteName(const QString &name);

//! Returns true if \a name is valid for a local file on this system.
bool isLocalName(const QString &name);

//! Returns true if \a name is valid on Windows: no device, no reserved character, no space or full stop at the end.
bool isWindowsName(const QString &name);

//! Returns a key that is equal for names that are equal for the file system.
QString key(const QString &name);

//! Returns \a name with a number before the suffix, for example "plan(2).dwg", at most 255 bytes long.
QString numbered(const QString &name, int number);

//! Returns the path of the temporary file of a download: next to its target, with a short name.
QString partPath(const TransferRecord &record);

//! Returns the entries of the folder \a path, each with its size, or with the reason why it cannot be uploaded.
//! \param error set if the folder cannot be read
std::vector<FolderEntry> entriesOf(const QString &path, VellError *error);

//! Renames the file \a from to \a to, which is replaced. \return the error message, or an empty string
QString replace(const QString &from, const QString &to);

} // namespace local_names
