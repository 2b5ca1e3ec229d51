#pragma once

#include <documents/VellDocuments.h>
#include <session/VellSession.h>
#include <support/ScriptedServer.h>

#include <QString>
#include <QStringList>

//! \brief A session on a server that answers pages of one long list of files, and keeps what it was asked.
class ListServer
{
public:
    //! The list has the names 0 to \a count - 1, with as many digits as the last one.
    explicit ListServer(int count);

    //! The documents, as they are at the server, in the order "by name". The identifier of a document is "id-" and its
    //! first name.
    QStringList names;

    //! The documents \a first to \a last as the server sends them.
    QList<VellDocument> documents(int first, int last) const;

    //! What was asked for since the last call: "order skip+limit", "names skip+limit" or "count".
    QStringList takeRequests();

    //! From now on each request ends with this status; 200 for none.
    int failureStatus = 200;

private:
    ScriptedReply answer(const ScriptedRequest &request);
    QByteArray json(const QString &name) const;

    ScriptedServer m_server;

public:
    VellSession session;
    VellDocuments service;
};
