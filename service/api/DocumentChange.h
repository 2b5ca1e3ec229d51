#pragma once

#include <QJsonArray>
#include <QJsonObject>

namespace service {

class Session;
struct Document;

//! \name Changes of documents
//! Inside a Transaction of the caller; they throw HttpError, and then nothing is to be committed.
//! @{

//! Changes what \a body names: name, remark, links, parentId, category, host, password, preview, order, and with
//! "file" the content, which makes a new version.
void changeDocument(Document &document, const QJsonObject &body, Session &session);

//! \return how many positions were set
int changeOrder(const QJsonArray &body, Session &session);

//! \return how many documents were moved
int moveDocuments(const QJsonObject &body, Session &session);
//! @}

} // namespace service
