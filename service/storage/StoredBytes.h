#pragma once

#include <QtGlobal>

namespace service {

class ContentStore;
class Database;

//! Returns the bytes of all contents and of the parts of uploads, as a shared database counts them.
qint64 storedBytes(Database &database);

//! Compares them with the quota, after a change and before it is committed. Changes follow one another, so that no other service can exceed it
//! at the same time. Without a shared database ContentStore counts alone.
//! \throws StorageError, as for a full disk
void requireRoom(Database &database, const ContentStore &store);

} // namespace service
