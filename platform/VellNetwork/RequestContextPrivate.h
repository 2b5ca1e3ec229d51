#pragma once

#include <VellNetwork/RequestContext.h>

#include <mutex>
#include <vector>

class HttpReply;

//! \brief What a context shares with its replies, which may outlive it.
class RequestContext::Private
{
public:
    explicit Private(const RequestSettings &settings);

    //! That of the calling thread's context; null if it is in none.
    static std::shared_ptr<Private> current();

    //! Until remove() abort() ends \a reply. \return false when the context has been aborted already
    bool add(HttpReply *reply);
    void remove(HttpReply *reply);
    void setFailure(const NetworkFailure &failure);

    const RequestSettings settings;

    mutable std::mutex mutex;
    std::vector<HttpReply *> replies;
    bool isAborted = false;
    qint64 sentPerSecond = 0;
    qint64 receivedPerSecond = 0;
    std::optional<NetworkFailure> failure;
};
