#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QUrl>

//! \brief Which redirects are followed, and with which request method.
class RedirectRule
{
    Q_DECLARE_TR_FUNCTIONS(RedirectRule)

public:
    static constexpr int MostRedirects = 50;

    //! Whether a response with \a status and an address redirects.
    static bool isRedirect(int status);

    //! The method of the request to the new address.
    static QByteArray nextMethod(int status, const QByteArray &method);

    //! Why a request with \a method from \a from to \a to is not sent on; empty when it is.
    static QString refusal(int status, const QByteArray &method, const QUrl &from, const QUrl &to,
                           bool hasToken);
};
