#pragma once

#include <document_model/DocumentJson.h>
#include <document_model/VellDocument.h>

#include <QJsonDocument>

//! Returns the document in \a content, the body of a response; a default-constructed record if it is empty or not a JSON object.
inline VellDocument documentOfReply(const QByteArray &content)
{
    VellDocument document;
    const QJsonDocument reply = QJsonDocument::fromJson(content);
    if (reply.isObject())
        VellPubDoc::jsonToDocObject(reply.object(), document);
    return document;
}
