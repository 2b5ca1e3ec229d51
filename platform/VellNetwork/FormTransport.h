#pragma once

#include <QNetworkAccessManager>

class QHttpMultiPart;

//! \brief Sends forms: only a QNetworkAccessManager can read the bytes of a QHttpMultiPart.
//!
//! It starts threads that watch the network interfaces, so create it only for a form.
class FormTransport : public QNetworkAccessManager
{
    Q_OBJECT

public:
    explicit FormTransport(QObject *parent);

    //! See Transport::post(). \a body must not be null.
    QNetworkReply *post(const QNetworkRequest &request, QHttpMultiPart *body);

protected:
    //! Called by QNetworkAccessManager with the bytes of a form.
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                 QIODevice *outgoingData) override;

private:
    bool m_isStreaming = false; // set by post() for createRequest()
};
