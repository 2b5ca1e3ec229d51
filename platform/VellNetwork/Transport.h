#pragma once

#include "engine/Transfer.h"

#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QString>

class QHttpMultiPart;

//! \brief The one way out: makes the replies of one thread, each an HttpReply.
//!
//! It is an access manager because only those read the bytes of a QHttpMultiPart.
class Transport : public QNetworkAccessManager
{
    Q_OBJECT

public:
    enum class Verb { Get, Post, Put, Delete };

    //! The transport of the calling thread, made on first use. It ends with the thread, that of the
    //! main thread with the application object, and takes the replies with it that are left.
    static Transport &ofThisThread();

    //! Sends a request at once. \a address is unencoded text. \a body goes out as compact JSON with
    //! POST and PUT and is not looked at otherwise. The reply is the caller's to delete.
    QNetworkReply *send(Caller caller, Verb verb, const QString &address,
                        const QJsonDocument &body = {});

    //! Asks for the content from byte \a offset on, see NetworkManager::getFrom().
    QNetworkReply *getFrom(const QString &address, qint64 offset, const QByteArray &entityTag);

    //! Posts a form. \a body becomes a child of the reply; null sends an empty body.
    //!
    //! A form that owns no device is taken over at once; the devices of others are read while the form is
    //! sent, and must have a size.
    QNetworkReply *post(const QString &address, QHttpMultiPart *body);

protected:
    //! Called by QNetworkAccessManager with the bytes of a form.
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;

private:
    bool m_isStreaming = false; // what post() passes to createRequest()
};
