#pragma once

#include "../engine/Transfer.h"

#include <VellNetwork/NetworkFailure.h>

#include <QCoreApplication>
#include <QNetworkReply>
#include <QString>

//! \brief The end of a request, for the program and for the user.
struct RequestFailure
{
    QNetworkReply::NetworkError error = QNetworkReply::NoError; //!< NoError if it did not fail
    NetworkFailure::Reason reason = NetworkFailure::Reason::Other;
    QString message;
};

//! \brief Determines the message, and Qt's error code, of a request that has failed.
class FailureText
{
    Q_DECLARE_TR_FUNCTIONS(FailureText)

public:
    //! For a transfer to \a url without a complete response; an empty RequestFailure if it is complete.
    static RequestFailure ofTransfer(const TransferEnd &end, const QUrl &url);

    //! For a complete response, by its status and its body; an empty RequestFailure for 2xx.
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
