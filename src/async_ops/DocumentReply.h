#pragma once

#include <document_model/DocumentJson.h>
#include <document_model/VellDocument.h>

#include <QJsonDocument>

//! The document in the reply \a content; a default record when that is empty or no JSON object.
inline VellDocument documentOfReply(const QByteArray &content)
{
    VellDocument document;
    const QJsonDocument reply = QJsonDocument::fromJson(content);
    if (reply.isObject())
        VellPubDoc::jsonToDocObject(reply.object(), document);
    return document;
}
