#pragma once

#include <service/records/DocumentFields.h>

#include <QJsonArray>
#include <QJsonObject>

namespace service {

class JsonInput;
class RequestState;

//! \name Changes of documents
//! To be called in a Transaction, which must not be committed if they throw HttpError.
//! @{

//! Sets the fields that are stored unchanged. \param use Created or Changed
void readPlainFields(Document &document, const JsonInput &input, DocumentField::Use use);

//! Changes the fields in \a body: name, remark, links, parentId, the plain fields, and the content ("file"), which creates a new
//! version.
void changeDocument(Document &document, const QJsonObject &body, RequestState &state);

//! \return the number of positions that were set
int changeOrder(const QJsonArray &body, RequestState &state);

//! \return the number of documents that were moved
int moveDocuments(const QJsonObject &body, RequestState &state);
//! @}

} // namespace service
