#pragma once

#include <document_model/VellDocument.h>
#include <velldocumentdata_export.h>

#include <QObject>
#include <QString>

class AsyncNetManager;

//! \brief Renames one document or folder, without blocking.
//!
//! The service decides whether the name will do; ask VellDocumentData::isDocNameExist() before.
//!
//! Returns at once; the outcome arrives by one of the signals. One object can send several requests in turn.
//! It never deletes itself: its creator or its parent does, and a reply still in flight is then dropped
//! without a signal. Belongs to the thread that made it, which must run an event loop.
class VELLDOCUMENTDATA_EXPORT AsyncRenameDoc : public QObject
{
    Q_OBJECT

public:
    explicit AsyncRenameDoc(QObject *parent = nullptr);
    ~AsyncRenameDoc() override;

    void renameDoc(const QString &id, const QString &name);

Q_SIGNALS:
    //! The document as the service has it now; a default record when the reply was empty or no JSON
    //! object.
    void renameDocFinish(const VellDocument &doc);

    //! The request failed; \a code is the QNetworkReply::NetworkError.
    void error(int code);

private Q_SLOTS:
    void updateComplete(const QByteArray &content);

private:
    Q_DISABLE_COPY(AsyncRenameDoc)

    AsyncNetManager *netManager;
};
