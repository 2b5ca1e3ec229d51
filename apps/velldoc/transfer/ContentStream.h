#pragma once

class QFile;
class QIODevice;

namespace velldoc {

class Context;
struct DownloadTask;

//! Writes the content of \a task to \a device, which is open, as it arrives, with progress. \throws Failure; what has been
//! written by then is a part of the content
void streamContent(Context &context, const DownloadTask &task, QIODevice &device);

//! Opens the standard output for contents. \throws Failure also when it is taken by --json
void prepareStandardOutput(const Context &context, QFile &output);

} // namespace velldoc
