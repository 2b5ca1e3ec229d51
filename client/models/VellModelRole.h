#pragma once

#include <vellclient_export.h>

#include <QByteArray>
#include <QHash>
#include <QVariant>

struct VellDocument;

//! \brief What the models tell of an entry beside the roles of Qt.
struct VELLCLIENT_EXPORT VellModelRole
{
    enum {
        Document = Qt::UserRole, //!< the VellDocument
        Id, //!< its `_id`
        IsFolder,
        IsLoaded, //!< false while the entry has not been fetched: all other roles are empty
        Rights, //!< QVariantMap: name of the right to whether the user has it
        Transfer, //!< see VellDocumentModel::setTransferState()
    };

    //! Their names in QML: document, documentId, isFolder, isLoaded, rights, transfer.
    static QHash<int, QByteArray> names();

    //! What the roles Document to Rights give for \a document; invalid for other roles.
    static QVariant value(const VellDocument &document, int role);
};
