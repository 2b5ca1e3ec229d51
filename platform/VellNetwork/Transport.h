#pragma once

#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QString>

class QHttpMultiPart;
class ReplyWatch;

//! \brief The one way out: sends every request of one thread, over connections that they share.
//!
//! Each reply gets a ReplyWatch, and each body is an UploadBody.
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
    QNetworkReply *send(Verb verb, const QString &address, const QJsonDocument &body = {});

    //! Posts a form. \a body becomes a child of the reply; null sends an empty body.
    QNetworkReply *post(const QString &address, QHttpMultiPart *body);

protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;
};
