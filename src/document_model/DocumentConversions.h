#pragma once

#include <document_model/VellDocument.h>
#include <document_model/VellDocumentLite.h>
#include <velldocumentdata_export.h>

#include <QList>
#include <QString>

class QFileInfo;

namespace VellPubDoc {

//! \name Reduced records
//! All three are reentrant and never fail.
//! @{

//! Assigns `_id`, `name`, `fileSize`, `suffix`, `createdAt` and `createdBy` of \a doc from \a lite
//! and touches no other field. A creation time that cannot be read gives an invalid date-time.
VELLDOCUMENTDATA_EXPORT void docLite2Document(const VellDocumentLite &lite, VellDocument &doc);

//! Appends a fresh record for each element of \a lites, in order, to \a docs, which keeps what it
//! held. All but the six fields have their defaults: every new record is of type "dir".
VELLDOCUMENTDATA_EXPORT void docLite2Document(const QList<VellDocumentLite> &lites,
                                              QList<VellDocument> &docs);

//! Assigns all six fields of \a lite from \a doc. An invalid creation time gives empty text.
VELLDOCUMENTDATA_EXPORT void document2DocLite(const VellDocument &doc, VellDocumentLite &lite);
//! @}

//! \name Records of local files
//! @{

//! Makes \a doc the record of a file or folder on the local disk, the starting point of an upload.
//!
//! Assigns `filePath` (as given, neither absolute nor canonical), `name` (with the suffix),
//! `fileSize` (bytes), `suffix` (behind the last dot) and `type`, and touches no other field.
//! `type` is "dir" for a directory and "file" for everything else, a symbolic link to a directory
//! included, so that an upload of a tree cannot walk in circles.
//!
//! Leaves \a doc as it was when \a info names nothing that exists (a link whose target is missing
//! counts as missing). Reentrant; looks at the file system, reads no content.
VELLDOCUMENTDATA_EXPORT void getVellDocument(const QFileInfo &info, VellDocument &doc);

//! The same for a \a path.
VELLDOCUMENTDATA_EXPORT void getVellDocument(const QString &path, VellDocument &doc);
//! @}

//! Replaces the flat list \a docs by the forest that its records describe.
//!
//! The roots are the records with an empty `parentId`. Every record whose `parentId` is exactly
//! the `_id` of a record in the forest stands among its `children`. Roots and children keep the
//! order of the input; nothing is sorted. In particular
//! - a record whose parent is not in the forest is dropped;
//! - `children` that a record brings along stay, in front of those that the list adds, and records
//!   below them that name them as their parent find them;
//! - of two records with the same `_id` each gets all records that name it.
//!
//! A record without `_id` can be nobody's parent, and one whose `_id` stands on the way from its
//! root already ends that branch: both keep the `children` that they brought along and get no
//! others.
//!
//! Takes time and memory linear in the number of records, also when identifiers occur twice (equal
//! subtrees share their data). Only records that are each other's ancestors in several ways can
//! make the result, and with it the time, grow faster.
//!
//! Building needs no stack, however deep the forest is. Taking it apart does: destroying the last
//! copy of a record destroys its `children` from within, at about 170 bytes of stack for each
//! level. 40,000 levels are safe on a stack of 8 MiB (the main thread on Linux), 5,000 on one of 1
//! MiB (the main thread on Windows). A program that must take deeper ones empties `children` from
//! below.
//!
//! Reentrant; never fails.
VELLDOCUMENTDATA_EXPORT void makeDocListTree(QList<VellDocument> &docs);

} // namespace VellPubDoc
