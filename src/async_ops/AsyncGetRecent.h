#pragma once

#include <document_model/VellDocument.h>
#include <velldocumentdata_export.h>

#include <QObject>
#include <QString>

class AsyncNetManager;

//! \brief Lists the files that the current user made last, without blocking.
//!
//! The user and the project are those of the client's cache object at the time of the call.
//!
//! Returns at once; the outcome arrives by one of the signals. One object can send several requests in turn.
//! It never deletes itself: its creator or its parent does, and a reply still in flight is then dropped
//! without a signal. Belongs to the thread that made it, which must run an event loop.
class VELLDOCUMENTDATA_EXPORT AsyncGetRecent : public QObject
{
    Q_OBJECT

public:
    explicit AsyncGetRecent(QObject *parent = nullptr);
    ~AsyncGetRecent() override;

    //! Asks for the user's newest 50 files of \a category in the open project, newest first.
    //! \param ignoredArg not looked at: the project is always the open one.
    void getRecentDocs(const QString &ignoredArg, const QString &category);

Q_SIGNALS:
    //! The answer, in its order; empty when the reply was empty or no JSON array. A record without a
    //! `documentId` has its `_id` there.
    void getRecentDocsFinish(const VellDocumentList &docs);

    //! The request failed; \a code is the QNetworkReply::NetworkError.
    void error(int code);

private Q_SLOTS:
    void getComplete(const QByteArray &content);

private:
    Q_DISABLE_COPY(AsyncGetRecent)

    AsyncNetManager *netManager;
};
