#pragma once

#include <QtGlobal>

//! \brief Sizes that decide how a file is uploaded.
//!
//! \since 0.1
//! \sa AsyncCreateDocument
namespace VellUploadLimits {

//! Files of up to this many bytes are sent in one request, larger ones in chunks.
constexpr qint64 WholeFileLimit = 10'485'760;

//! The size of all chunks of a file except the last one, in bytes.
constexpr qint64 ChunkBytes = 4'194'304;

} // namespace VellUploadLimits
