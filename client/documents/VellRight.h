#pragma once

#include <QMetaType>
#include <QString>

//! What a user may do with a document or in a folder.
enum class VellRight {
    Download,
    Upload,
    Edit,
    Delete,
    EditOwn, //!< what the user has made
    DeleteOwn,
};
