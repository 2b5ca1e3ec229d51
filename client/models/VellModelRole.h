#pragma once

#include <vellclient_export.h>

#include <QByteArray>
#include <QHash>
#include <QVariant>

struct VellDocument;

//! \brief The roles of the models, in addition to those of Qt.
//!
//! \since 0.1
//! \sa VellDocumentModel, VellFolderModel
struct VELLCLIENT_EXPORT VellModelRole
{
    enum {
        Document = Qt::UserRole, //!< the VellDocument
        Id, //!< its `_id`
        IsFolder,
        IsLoaded, //!< false until the entry has been fetched; until then all other roles are empty
        Rights, //!< QVariantMap from the name of a right to a bool: the rights of the user
        Transfer, //!< see VellDocumentModel::setTransferState()
    };

    //! Returns the names for QML: document, documentId, isFolder, isLoaded, rights, transfer.
    static QHash<int, QByteArray> names();

    //! Returns the data of \a document for the roles Document to Rights; invalid for other roles.
    static QVariant value(const VellDocument &document, int role);
};
