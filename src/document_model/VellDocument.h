#pragma once

#include <velldocumentdata_export.h>

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QStringList>

//! \brief What a caller has changed in a record before it asks for an update.
//!
//! Codes other than those named here are the client's own and are cast from its integers; the
//! library carries them and acts on none.
enum class VellDocumentChange : qint32 {
    EntityLinks = 0, //!< VellDocument::entity
};

//! \brief One document or folder of the service: what every query returns and every change takes.
//!
//! A plain value: copying copies every field, the subtree in #children included, and the containers
//! share their data until one side changes. A freshly made record is a folder at the top level.
//!
//! Registered with the meta-type system as "VellDocument", so that it can travel through queued
//! signals.
struct VellDocument
{
    QString _id; //!< the record's own identifier on the service
    QString name; //!< display name; of a local file the name with its suffix
    QString parentId; //!< #_id of the folder that holds it; empty at the top level
    QString documentId; //!< the document of which this is a version or history entry
    QString hostId; //!< the object that the document is attached to
    int hostType = 0; //!< kind of that object, as the service numbers it
    QString category; //!< the service's category word
    QString projectId; //!< the project that the document belongs to
    int order = -1; //!< sort position given by the service
    bool favorite = false; //!< the user has marked it as a favourite
    QString type = QStringLiteral("dir"); //!< exactly "dir" for a folder, "file" for a file
    QString status; //!< the service's status word
    QString fileId; //!< the stored file content
    QString filePath; //!< the local file it was made from; never set by the service
    qint64 fileSize = 0; //!< bytes
    QString suffix; //!< without the dot
    QString pwd; //!< access password, opaque text that is only carried
    QString previewId; //!< the preview rendition
    QString remark; //!< free text
    QDateTime downloadTime; //!< when the user last downloaded it
    QMap<QString, bool> auths; //!< the user's rights: name of the right to granted
    int recycle = 0; //!< recycle-bin state as the service numbers it; 0 = not recycled
    QList<VellDocument> children; //!< filled only by VellPubDoc::makeDocListTree()
    QList<VellDocumentChange> codeList; //!< filled by the caller for VellDocumentData::updateDoc()
    QMap<QString, QStringList> entity; //!< links: entity kind to linked identifiers
    QDateTime updatedAt; //!< last change
    QString updatedBy; //!< who made it
    QDateTime createdAt; //!< creation
    QString createdBy; //!< who created it
    QDateTime historyUpdatedAt; //!< time of a history entry; set only in histories
};

//! The name of the list in signatures of signals; registered with the meta-type system as such.
using VellDocumentList = QList<VellDocument>;

Q_DECLARE_TYPEINFO(VellDocument, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(VellDocument)
