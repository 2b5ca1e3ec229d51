#pragma once

#include "../engine/Transfer.h"

#include <VellNetwork/NetworkFailure.h>

#include <QCoreApplication>
#include <QNetworkReply>
#include <QString>

//! \brief How a request ended, for the program and for the person before it.
struct RequestFailure
{
    QNetworkReply::NetworkError error = QNetworkReply::NoError; //!< NoError when it did not fail
    NetworkFailure::Reason reason = NetworkFailure::Reason::Other;
    QString message;
};

//! \brief Says in words why a request failed, and with the error numbers that Qt has for each case.
class FailureText
{
    Q_DECLARE_TR_FUNCTIONS(FailureText)

public:
    //! Of a transfer to \a url that brought no whole response; an empty RequestFailure when it did.
    static RequestFailure ofTransfer(const TransferEnd &end, const QUrl &url);

    //! Of a whole response, by its status and what it says of itself; an empty RequestFailure for 2xx.
    static RequestFailure ofResponse(const ResponseHead &head, const QByteArray &body,
                                     bool isOverProxy);

    static RequestFailure timedOut();
    static RequestFailure cancelled();
    static RequestFailure badAddress();
    static RequestFailure brokenBody();
    static RequestFailure tooLargeToKeep();
    static RequestFailure refusedRedirect(const QString &why);
    static RequestFailure tooManyRedirects();

private:
    static RequestFailure ofTls(const TransferEnd &end, const QUrl &url);
    static RequestFailure ofProxy(const TransferEnd &end);
    static QString proxyRefusal(int status);
};
