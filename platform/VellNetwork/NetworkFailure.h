#pragma once

#include <QMetaType>
#include <QNetworkReply>
#include <QString>
#include <QUrl>

//! \brief Why a request failed, as far as the transport and the service said.
struct NetworkFailure
{
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    int httpStatus = 0; //!< 0 when no answer arrived
    QString message; //!< the service's own words ("error" of its JSON body), else the transport's
    QUrl url; //!< without user name and password
};
Q_DECLARE_METATYPE(NetworkFailure)
