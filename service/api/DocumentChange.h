#pragma once

#include <service/records/DocumentFields.h>

#include <QJsonArray>
#include <QJsonObject>

namespace service {

class JsonInput;
class Session;

//! \name Changes of documents
//! Inside a Transaction of the caller; they throw HttpError, and then nothing is to be committed.
//! @{

//! Takes over the fields of a request that are stored as they are. \param use Created or Changed
void readPlainFields(Document &document, const JsonInput &input, DocumentField::Use use);

//! Changes what \a body names: name, remark, links, parentId, the plain fields, and with
//! "file" the content, which makes a new version.
void changeDocument(Document &document, const QJsonObject &body, Session &session);

//! \return how many positions were set
int changeOrder(const QJsonArray &body, Session &session);

//! \return how many documents were moved
int moveDocuments(const QJsonObject &body, Session &session);
//! @}

} // namespace service
