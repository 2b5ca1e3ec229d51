#pragma once

#include <VellNetwork/vellnetwork_export.h>

#include <QMutex>
#include <QString>

#include <chrono>

//! \brief What every request of this process has in common besides its address.
//!
//! A change takes effect with the next request. Thread-safe.
class VELLNETWORK_EXPORT NetworkSettings
{
public:
    static NetworkSettings &instance();

    //! How long a request may go without a byte sent or received before it ends with
    //! QNetworkReply::TimeoutError; 30 s unless set. Zero or less waits for ever. Time in which the
    //! thread of the request runs no events does not count.
    std::chrono::milliseconds stallTimeout() const;
    void setStallTimeout(std::chrono::milliseconds timeout);

    //! Sent as "Authorization: Bearer …" with every request, without blanks around it; an empty token
    //! (the default) sends no such header. The token is never logged, and a redirect never carries it
    //! to another host or port.
    QString accessToken() const;
    void setAccessToken(const QString &token);

private:
    NetworkSettings() = default;

    mutable QMutex m_mutex;
    std::chrono::milliseconds m_stallTimeout{30000};
    QString m_accessToken;
};
