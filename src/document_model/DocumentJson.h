#pragma once

#include <document_model/VellDocument.h>
#include <velldocumentdata_export.h>

#include <QJsonObject>

//! \brief Functions of the document model, the file types and the same-name prompt.
//!
//! \since 0.1
namespace VellPubDoc {

//! Fills \a doc from \a obj, a document in the JSON form of the service.
//!
//! Every field of this form is assigned, also if its key is missing: a missing key or a value of another JSON type gives an
//! empty string, 0, false or an invalid date-time, even where a default-constructed record has another value (`type` becomes
//! empty, `order` 0). `fileSize` may be a number or a numeric string, and is read as a 64-bit integer. Rights are merged into
//! `auths`: a right is granted only by the JSON string "true", and rights that \a obj does not contain stay as they are.
//! `filePath`, `children`, `codeList` and `historyUpdatedAt` do not change.
//!
//! Reentrant; never fails.
VELLDOCUMENTDATA_EXPORT void jsonToDocObject(const QJsonObject &obj, VellDocument &doc);

//! Fills \a doc from \a obj, a version in the JSON form of the service: `_id`, `name`, `documentId`, `suffix`,
//! `previewId`, `remark`, `fileId`, `fileSize`, `createdAt`, `createdBy` and, from "updatedAt",
//! `historyUpdatedAt`. All other fields do not change.
//!
//! `suffix` is always that of the nested "file" object, and empty if there is none. `fileSize` is read as a 32-bit integer: a
//! size of 2 GiB or more, or a numeric string, gives 0.
//!
//! Reentrant; never fails.
VELLDOCUMENTDATA_EXPORT void jsonToDocHistoryObject(const QJsonObject &obj, VellDocument &doc);

//! Inserts \a doc into \a out in the compact form of the client; other keys of \a out do not change.
//!
//! This is not the form of the service: "documentId" repeats `_id`, `favorite` is "frequent", `previewId` is "pdfView",
//! "fileId" is at the top level, "downloadTime" is the time of the call, and "fileSize" inside "file" is the low 32 bits of the
//! size as a signed number.
//!
//! Reentrant; never fails.
VELLDOCUMENTDATA_EXPORT void doc2JsonString(const VellDocument &doc, QJsonObject &out);

} // namespace VellPubDoc
