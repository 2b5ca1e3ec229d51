#pragma once

#include <document_model/VellDocument.h>
#include <velldocumentdata_export.h>

#include <QJsonObject>

//! Free functions of the document model, the file types and the same-name prompt.
namespace VellPubDoc {

//! Fills \a doc from one document object of the service.
//!
//! Every field of the service's form is assigned, whether its key is there or not: a missing key or a
//! value of another JSON type gives empty text, 0, false or an invalid date-time, also where
//! a fresh record has another default (`type` becomes empty, `order` 0).
//! `fileSize` takes a number or a numeric text and is read in 64 bits. Rights are merged into `auths`:
//! a right is granted only by the JSON string "true", and rights that the object does not name stay.
//! `filePath`, `children`, `codeList` and `historyUpdatedAt` are left alone.
//!
//! Reentrant; never fails.
VELLDOCUMENTDATA_EXPORT void jsonToDocObject(const QJsonObject &obj, VellDocument &doc);

//! Fills \a doc from one entry of a document's history: `_id`, `name`, `documentId`, `suffix`,
//! `previewId`, `remark`, `fileId`, `fileSize`, `createdAt`, `createdBy` and, from "updatedAt",
//! `historyUpdatedAt`. All other fields are left alone.
//!
//! `suffix` is always that of the nested "file" object, empty without one. `fileSize` is read as a
//! 32-bit number: a size of 2 GiB or more, or a numeric text, gives 0.
//!
//! Reentrant; never fails.
VELLDOCUMENTDATA_EXPORT void jsonToDocHistoryObject(const QJsonObject &obj, VellDocument &doc);

//! Inserts \a doc into \a out in the client's own compact form; other keys of \a out stay.
//!
//! This is not the form of the service: "documentId" repeats `_id`, `favorite` is "frequent",
//! `previewId` is "pdfView", "fileId" stands at the top level, "downloadTime" is the time of the call, and
//! "fileSize" inside "file" is the low 32 bits of the size as a signed number.
//!
//! Reentrant; never fails.
VELLDOCUMENTDATA_EXPORT void doc2JsonString(const VellDocument &doc, QJsonObject &out);

} // namespace VellPubDoc
