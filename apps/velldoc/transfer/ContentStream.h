#pragma once

class QFile;
class QIODevice;

namespace velldoc {

class Context;
struct DownloadTask;

//! Writes the content of \a task to the open \a device while it arrives, with progress. \throws Failure; then a part of the content
//! may have been written
//! \return false if the reader of \a device has closed it, as "head" does: it has got what it wanted
bool streamContent(Context &context, const DownloadTask &task, QIODevice &device);

//! Opens the standard output for contents. \throws Failure also if it is used by --json
void prepareStandardOutput(const Context &context, QFile &output);

} // namespace velldoc
