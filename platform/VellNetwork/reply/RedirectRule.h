#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QUrl>

//! \brief Decides which redirects are followed, and with which request method.
class RedirectRule
{
    Q_DECLARE_TR_FUNCTIONS(RedirectRule)

public:
    static constexpr int MostRedirects = 50;

    //! Returns true if a response with \a status and an address is a redirect.
    static bool isRedirect(int status);

    //! Returns the method of the request to the new address.
    static QByteArray nextMethod(int status, const QByteArray &method);

    //! Returns why a request with \a method is not redirected from \a from to \a to; empty if it is.
    static QString refusal(int status, const QByteArray &method, const QUrl &from, const QUrl &to,
                           bool hasToken);
};
