#include "RequestContextPrivate.h"

#include "reply/HttpReply.h"

#include <algorithm>
#include <utility>

namespace {

thread_local RequestContext *currentContext = nullptr;

RequestSettings normalized(RequestSettings settings)
{
    if (!settings.baseApi.isEmpty() && !settings.baseApi.endsWith(QLatin1Char('/')))
        settings.baseApi += QLatin1Char('/');
    return settings;
}

} // namespace

RequestContext::Private::Private(const RequestSettings &given) : settings(normalized(given)) {}

std::shared_ptr<RequestContext::Private> RequestContext::Private::current()
{
    return currentContext ? currentContext->d : nullptr;
}

bool RequestContext::Private::add(HttpReply *reply)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (isAborted)
        return false;
    replies.push_back(reply);
    return true;
}

void RequestContext::Private::remove(HttpReply *reply)
{
    const std::lock_guard<std::mutex> lock(mutex);
    replies.erase(std::remove(replies.begin(), replies.end(), reply), replies.end());
}

void RequestContext::Private::setFailure(const NetworkFailure &reason)
{
    const std::lock_guard<std::mutex> lock(mutex);
    failure = reason;
}

RequestContext::RequestContext(const RequestSettings &settings)
    : d(std::make_shared<Private>(settings))
{}

RequestContext::~RequestContext() = default;

RequestSettings RequestContext::settings() const
{
    return d->settings;
}

void RequestContext::abort()
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->isAborted = true;
    // With the lock held, so that no reply is deleted before its call is queued.
    for (HttpReply *const reply : d->replies)
        QMetaObject::invokeMethod(reply, &HttpReply::abort, Qt::QueuedConnection);
}

bool RequestContext::isAborted() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->isAborted;
}

void RequestContext::setSpeedLimits(qint64 sentPerSecond, qint64 receivedPerSecond)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->sentPerSecond = sentPerSecond;
    d->receivedPerSecond = receivedPerSecond;
}

std::optional<NetworkFailure> RequestContext::failure() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->failure;
}

void RequestContext::forgetFailure()
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->failure.reset();
}

RequestContext *RequestContext::current()
{
    return currentContext;
}

RequestScope::RequestScope(RequestContext &context)
    : m_before(std::exchange(currentContext, &context))
{}

RequestScope::~RequestScope()
{
    currentContext = m_before;
}
