#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <vector>

namespace service {

struct HttpRequest;

//! \brief The proxies whose word counts: who the client is, and under which address it has reached them.
//!
//! A proxy must set or remove all of the headers that it knows, because they may come from the client.
class TrustedProxies
{
public:
    //! Adds the addresses in "ADDRESS" or "ADDRESS/BITS". \return false for a text of another form
    bool add(const QString &text);

    //! Sets client, scheme, host and prefix of a request as `Forwarded` says, or without it `X-Forwarded-For`, `-Proto` and `-Host`; the
    //! prefix as `X-Forwarded-Prefix` says. Headers that others than trusted proxies have added are ignored. Requires HttpRequest::client
    //! to be the peer of the connection.
    void apply(HttpRequest &request) const;

private:
    struct Network
    {
        std::array<unsigned char, 16> bytes{}; //!< IPv4 as IPv6
        int bits = 0;
    };

    bool isTrusted(const QString &address) const;
    void applyForwarded(HttpRequest &request) const;
    void applyOlderHeaders(HttpRequest &request) const;
    //! Goes back from the peer as long as the one who says it is trusted. \param steps how many names were used
    QString clientIn(const QList<QByteArray> &names, const QString &peer, int *steps) const;

    std::vector<Network> m_networks;
};

} // namespace service
