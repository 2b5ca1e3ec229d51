#pragma once

#include <document_model/VellDocument.h>
#include <document_model/VellDocumentLite.h>
#include <velldocumentdata_export.h>

#include <QList>
#include <QString>

class QFileInfo;

namespace VellPubDoc {

//! \name Reduced records
//! Reentrant; never fail.
//! @{

//! Assigns `_id`, `name`, `fileSize`, `suffix`, `createdAt` and `createdBy` of \a doc from \a lite
//! and no other field. A creation time that cannot be parsed gives an invalid date-time.
//! \sa document2DocLite()
VELLDOCUMENTDATA_EXPORT void docLite2Document(const VellDocumentLite &lite, VellDocument &doc);

//! Appends a record for each element of \a lites to \a docs, in the same order. All other fields have their defaults: the type
//! of every new record is "dir".
VELLDOCUMENTDATA_EXPORT void docLite2Document(const QList<VellDocumentLite> &lites,
                                              QList<VellDocument> &docs);

//! Assigns all six fields of \a lite from \a doc. An invalid creation time gives an empty string.
//! \sa docLite2Document()
VELLDOCUMENTDATA_EXPORT void document2DocLite(const VellDocument &doc, VellDocumentLite &lite);
//! @}

//! \name Records of local files
//! @{

//! Fills \a doc from a local file or folder, to prepare an upload.
//!
//! Assigns `filePath` (unchanged, neither absolute nor canonical), `name` (with the suffix), `fileSize` (bytes), `suffix` (the
//! text after the last dot) and `type`, and no other field. `type` is "dir" for a directory and "file" for everything else,
//! including a symbolic link to a directory, so that the upload of a tree cannot run in circles.
//!
//! Does not change \a doc if the file does not exist (a link whose target is missing counts as missing). Reentrant; accesses
//! the file system, but does not read the content.
//! \sa AsyncCreateDocument
VELLDOCUMENTDATA_EXPORT void getVellDocument(const QFileInfo &info, VellDocument &doc);

//! \overload
VELLDOCUMENTDATA_EXPORT void getVellDocument(const QString &path, VellDocument &doc);
//! @}

//! Replaces the flat list \a docs by the trees that its records describe.
//!
//! The roots are the records with an empty `parentId`. A record whose `parentId` is the `_id` of a record in a tree becomes one
//! of its `children`. Roots and children keep the order of the list; nothing is sorted. In particular
//! - a record whose parent is not in a tree is removed;
//! - `children` that a record already has are kept, before those that the list adds, and can be parents themselves;
//! - of two records with the same `_id` each gets all children with this `parentId`.
//!
//! A record without `_id` gets no children, and neither does a record whose `_id` is already that of one of its ancestors: both
//! keep the `children` that they have.
//!
//! Takes time and memory linear in the number of records, also if identifiers occur twice (equal subtrees share their data).
//! Only records that are each other's ancestors in several ways can make the result, and the time, grow faster.
//!
//! The depth of the trees does not matter for building them. Destroying them is recursive: the destructor of a record destroys
//! its `children`, and needs about 170 bytes of stack for each level. 40,000 levels are safe with a stack of 8 MiB (the main
//! thread on Linux), 5,000 with 1 MiB (the main thread on Windows). A program with deeper trees must clear `children` from the
//! lowest level up.
//!
//! Reentrant; never fails.
VELLDOCUMENTDATA_EXPORT void makeDocListTree(QList<VellDocument> &docs);

} // namespace VellPubDoc
