#pragma once

#include <QtGlobal>

//! \brief How files are divided for an upload.
namespace VellUploadLimits {

//! Up to this many bytes a file goes up in one request; above, in chunks.
constexpr qint64 WholeFileLimit = 10'485'760;

//! All chunks of a file but the last have this many bytes.
constexpr qint64 ChunkBytes = 4'194'304;

} // namespace VellUploadLimits
