#pragma once

#include <document_model/VellDocument.h>
#include <velldocumentdata_export.h>

#include <QObject>
#include <QString>

class AsyncNetManager;

//! \brief Fetches one document with its info and its password, without blocking.
//!
//! The request goes to "documents/ID" directly under the base address, not to "document-service/".
//!
//! Returns at once; the outcome arrives by one of the signals. One object can send several requests in turn.
//! It never deletes itself: its creator or its parent does, and a reply still in flight is then dropped
//! without a signal. Belongs to the thread that made it, which must run an event loop.
class VELLDOCUMENTDATA_EXPORT AsyncGetDocInfo : public QObject
{
    Q_OBJECT

public:
    explicit AsyncGetDocInfo(QObject *parent = nullptr);
    ~AsyncGetDocInfo() override;

    void getDocInfo(const QString &id);

Q_SIGNALS:
    //! The answer; a default record when the reply was empty or no JSON object.
    void getDocInfoFinish(const VellDocument &doc);

    //! The request failed; \a code is the QNetworkReply::NetworkError.
    void error(int code);

private Q_SLOTS:
    void getComplete(const QByteArray &content);

private:
    Q_DISABLE_COPY(AsyncGetDocInfo)

    AsyncNetManager *netManager;
};
