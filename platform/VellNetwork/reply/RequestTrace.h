#pragma once

#include <QNetworkReply>

//! \brief The line that the logging category `vell.network` prints for a request.
struct RequestTrace
{
    const QNetworkReply *reply = nullptr;
    QByteArray method;
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    qint64 sentBytes = 0;
    qint64 receivedBytes = 0;
    qint64 milliseconds = 0;

    //! Prints method, address, status or error, bytes and time, if the category is enabled.
    void write() const;
};
