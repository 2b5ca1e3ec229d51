#pragma once

#include "engine/Transfer.h"

#include <QJsonDocument>
#include <QObject>
#include <QString>

class FormTransport;
class QHttpMultiPart;
class QNetworkReply;
class QNetworkRequest;

//! \brief Sends all requests of one thread and creates their replies, HttpReply objects.
class Transport : public QObject
{
    Q_OBJECT

public:
    enum class Method { Get, Post, Put, Delete };

    //! Returns the transport of the calling thread, which is created on first use. It is destroyed with the thread, that of the
    //! main thread with the application object, together with the remaining replies.
    static Transport &ofThisThread();
    ~Transport() override;

    //! Sends a request at once. \a address is not percent-encoded. \a body is sent as compact JSON with POST and PUT, and ignored
    //! otherwise. The caller owns the reply.
    QNetworkReply *send(Caller caller, Method method, const QString &address,
                        const QJsonDocument &body = {});

    //! Requests the content from byte \a offset on, see NetworkManager::getFrom().
    QNetworkReply *getFrom(const QString &address, qint64 offset, const QByteArray &entityTag);

    //! Sends a form. \a body becomes a child of the reply; null sends an empty body.
    //!
    //! A form without devices is copied at once; devices of other forms are read while the form is sent, and must have a size.
    QNetworkReply *post(const QString &address, QHttpMultiPart *body);

private:
    FormTransport *m_forms = nullptr; // since the first form
};
