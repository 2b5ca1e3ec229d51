#pragma once

namespace velldoc {

class Context;
class DownloadPlan;

//! Executes \a plan, and prints and sets the result. \throws Failure also if a single file could not be downloaded
void fetchDownloads(Context &context, const DownloadPlan &plan);

//! Prints and sets what fetchDownloads() would do.
void showDownloads(Context &context, const DownloadPlan &plan);

} // namespace velldoc
