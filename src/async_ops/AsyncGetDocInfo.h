#pragma once

#include <document_model/VellDocument.h>
#include <velldocumentdata_export.h>

#include <QObject>
#include <QString>

class AsyncNetManager;

//! \brief Fetches one document with its info and its password, without blocking.
//!
//! The request is sent to "documents/ID" below the base address, not to "document-service/".
//!
//! \par States
//! \code{.unparsed}
//! Idle --getDocInfo()--> In flight --2xx response--> getDocInfoFinish() --> Idle
//!                            |
//!                            +--failure--> error() --> Idle
//! deletion: any state --> nothing more is emitted
//! \endcode
//!
//! Each request ends with one of the two signals; an object may send another request before the first one has ended. It is owned by
//! its creator or its parent, and does not delete itself. Belongs to the thread that created it, which must run an event loop.
//!
//! \since 0.1
//! \sa VellDocumentData::getDoc()
class VELLDOCUMENTDATA_EXPORT AsyncGetDocInfo : public QObject
{
    Q_OBJECT

public:
    explicit AsyncGetDocInfo(QObject *parent = nullptr);
    ~AsyncGetDocInfo() override;

    //! Requests the document \a id.
    void getDocInfo(const QString &id);

Q_SIGNALS:
    //! The document; a default-constructed record if the response was empty or not a JSON object.
    void getDocInfoFinish(const VellDocument &doc);

    //! The request failed; \a code is the QNetworkReply::NetworkError.
    void error(int code);

private Q_SLOTS:
    void getComplete(const QByteArray &content);

private:
    Q_DISABLE_COPY(AsyncGetDocInfo)

    AsyncNetManager *netManager;
};
