#pragma once

#include <velldocumentdata_export.h>

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QStringList>

//! \brief The changes of a record that VellDocumentData::updateDoc() sends.
//!
//! Clients may cast other integers to this type for codes of their own; the library keeps them and does nothing for them.
//!
//! \since 0.1
enum class VellDocumentChange : qint32 {
    EntityLinks = 0, //!< VellDocument::entity
};

//! \brief The record of one document or folder.
//!
//! An implicitly shared value type: a copy has all fields, including the subtree in #children. A default-constructed record is
//! a folder at the top level.
//!
//! Registered with the meta-type system as "VellDocument", so that it can be used in queued signals.
//!
//! \since 0.1
struct VellDocument
{
    QString _id; //!< identifier on the service
    QString name; //!< display name; for a local file its name with the suffix
    QString parentId; //!< #_id of the folder that contains it; empty at the top level
    QString documentId; //!< the document that this is a version of
    QString hostId; //!< the object that the document is attached to
    int hostType = 0; //!< kind of that object, a number of the service
    QString category; //!< the service's category word
    QString projectId; //!< the project that the document belongs to
    int order = -1; //!< position in the folder, set by the service
    bool favorite = false; //!< the user has marked it as a favourite
    QString type = QStringLiteral("dir"); //!< exactly "dir" for a folder, "file" for a file
    QString status; //!< the service's status word
    QString fileId; //!< identifier of the content
    QString filePath; //!< the local file that is to be uploaded; never set by the service
    qint64 fileSize = 0; //!< bytes
    QString suffix; //!< without the dot
    QString pwd; //!< access password; not interpreted
    QString previewId; //!< identifier of the preview
    QString remark; //!< free text
    QDateTime downloadTime; //!< when the user last downloaded it
    QMap<QString, bool> auths; //!< the user's rights: name of the right, and whether it is granted
    int recycle = 0; //!< recycle-bin state, a number of the service; 0 = not deleted
    QList<VellDocument> children; //!< set only by VellPubDoc::makeDocListTree()
    QList<VellDocumentChange> codeList; //!< set by the caller for VellDocumentData::updateDoc()
    QMap<QString, QStringList> entity; //!< links: kind of entity to identifiers
    QDateTime updatedAt; //!< last change
    QString updatedBy; //!< who made it
    QDateTime createdAt; //!< creation
    QString createdBy; //!< who created it
    QDateTime historyUpdatedAt; //!< last change of a version; set only in the history
};

//! Registered with the meta-type system under this name, for signals.
using VellDocumentList = QList<VellDocument>;

Q_DECLARE_TYPEINFO(VellDocument, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(VellDocument)
