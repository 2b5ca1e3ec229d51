#pragma once

#include <QMetaType>
#include <QString>

//! A right of a user on a document or a folder.
//! \since 0.1
//! \sa VellDocuments::may()
enum class VellRight {
    Download,
    Upload,
    Edit,
    Delete,
    EditOwn, //!< to edit documents that the user has created
    DeleteOwn, //!< to delete documents that the user has created
};
