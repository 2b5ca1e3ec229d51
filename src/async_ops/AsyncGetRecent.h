#pragma once

#include <document_model/VellDocument.h>
#include <velldocumentdata_export.h>

#include <QObject>
#include <QString>

class AsyncNetManager;

//! \brief Lists the newest files of the current user, without blocking.
//!
//! The user and the project are those of GetSoftCache() at the time of the call.
//!
//! \par States
//! \code{.unparsed}
//! Idle --getRecentDocs()--> In flight --2xx response--> getRecentDocsFinish() --> Idle
//!                               |
//!                               +--failure--> error() --> Idle
//! deletion: any state --> nothing more is emitted
//! \endcode
//!
//! Each request ends with one of the two signals; an object may send another request before the first one has ended. It is owned by
//! its creator or its parent, and does not delete itself. Belongs to the thread that created it, which must run an event loop.
//!
//! \since 0.1
//! \sa VellDocumentData::setRectentDocument()
class VELLDOCUMENTDATA_EXPORT AsyncGetRecent : public QObject
{
    Q_OBJECT

public:
    explicit AsyncGetRecent(QObject *parent = nullptr);
    ~AsyncGetRecent() override;

    //! Requests the user's newest 50 files of \a category in the open project, newest first.
    //! \param ignoredArg ignored: the project is always the open one.
    void getRecentDocs(const QString &ignoredArg, const QString &category);

Q_SIGNALS:
    //! The files, in the order of the response; empty if the response was empty or not a JSON array. In a record without
    //! `documentId` this field is set to `_id`.
    void getRecentDocsFinish(const VellDocumentList &docs);

    //! The request failed; \a code is the QNetworkReply::NetworkError.
    void error(int code);

private Q_SLOTS:
    void getComplete(const QByteArray &content);

private:
    Q_DISABLE_COPY(AsyncGetRecent)

    AsyncNetManager *netManager;
};
