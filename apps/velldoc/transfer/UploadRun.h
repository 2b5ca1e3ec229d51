#pragma once

namespace velldoc {

class Context;
class UploadPlan;

//! Executes \a plan, and prints and sets the result. \throws Failure also if a single file could not be stored
void sendUploads(Context &context, const UploadPlan &plan);

//! Prints and sets what sendUploads() would do.
void showUploads(Context &context, const UploadPlan &plan);

} // namespace velldoc
