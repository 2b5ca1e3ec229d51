#pragma once

//! From now on this process can change no file, for good: what opens one to write, or writes to one at a place, ends with
//! "Read-only file system", as after an error of the disk. Files can still be removed, so that a test leaves nothing.
//! \return false if the system does not allow that
bool makeDiskReadOnly();
