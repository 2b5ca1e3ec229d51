#pragma once

#include <VellNetwork/RequestContext.h>

#include <mutex>
#include <vector>

class HttpReply;

//! \brief The data that a context shares with its replies, which may outlive it.
class RequestContext::Private
{
public:
    explicit Private(const RequestSettings &settings);

    //! Returns the data of the calling thread's context; null if it has none.
    static std::shared_ptr<Private> current();

    //! Lets abort() end \a reply, until remove(). \return false if the context has already been aborted
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
