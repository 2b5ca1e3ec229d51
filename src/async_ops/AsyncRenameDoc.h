#pragma once

#include <document_model/VellDocument.h>
#include <velldocumentdata_export.h>

#include <QObject>
#include <QString>

class AsyncNetManager;

//! \brief Renames one document or folder, without blocking.
//!
//! The name is checked by the service only; VellDocumentData::isDocNameExist() tells before whether it is taken.
//!
//! \par States
//! \code{.unparsed}
//! Idle --renameDoc()--> In flight --2xx response--> renameDocFinish() --> Idle
//!                           |
//!                           +--failure--> error() --> Idle
//! deletion: any state --> nothing more is emitted
//! \endcode
//!
//! Each request ends with one of the two signals; an object may send another request before the first one has ended. It is owned by
//! its creator or its parent, and does not delete itself. Belongs to the thread that created it, which must run an event loop.
//!
//! \since 0.1
//! \sa VellDocumentData::isDocNameExist()
class VELLDOCUMENTDATA_EXPORT AsyncRenameDoc : public QObject
{
    Q_OBJECT

public:
    explicit AsyncRenameDoc(QObject *parent = nullptr);
    ~AsyncRenameDoc() override;

    //! Sets the name of the document or folder \a id to \a name.
    void renameDoc(const QString &id, const QString &name);

Q_SIGNALS:
    //! The document as it is on the service now; a default-constructed record if the response was empty or not a JSON object.
    void renameDocFinish(const VellDocument &doc);

    //! The request failed; \a code is the QNetworkReply::NetworkError.
    void error(int code);

private Q_SLOTS:
    void updateComplete(const QByteArray &content);

private:
    Q_DISABLE_COPY(AsyncRenameDoc)

    AsyncNetManager *netManager;
};
