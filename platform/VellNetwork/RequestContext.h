#pragma once

#include <VellNetwork/NetworkFailure.h>
#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/vellnetwork_export.h>

#include <QString>

#include <memory>
#include <optional>

//! \brief The settings of a RequestContext, instead of those of the process.
//!
//! \since 0.1
//! \sa NetworkSettings
struct RequestSettings
{
    QString baseApi; //!< see VellBaseApi::setBaseApi()
    QString accessToken; //!< see NetworkSettings, also for the following members
    QString caCertificates;
    ClientCertificate clientCertificate;
    QString proxy;
};

//! \brief A group of requests with settings of its own, which can be aborted together.
//!
//! A thread that is inside a RequestScope sends its requests in that context, whichever class sends them: they use the address and
//! the token of the context, VellBaseApi::getBaseApi() and the getters of NetworkSettings return its values, abort() ends the
//! requests, and failure() returns why the last request that failed did so.
//!
//! \code
//! RequestContext context(settings);
//! RequestScope scope(context);
//! const int count = documents.getDocumentsRangeCount(condition);
//! if (context.failure())
//!     report(*context.failure());
//! \endcode
//!
//! Thread-safe. Must outlive its scopes.
//!
//! \since 0.1
class VELLNETWORK_EXPORT RequestContext
{
public:
    explicit RequestContext(const RequestSettings &settings);
    ~RequestContext();
    Q_DISABLE_COPY(RequestContext)

    RequestSettings settings() const;

    //! Ends the requests in flight, and each later request of this context, with QNetworkReply::OperationCanceledError. This is not
    //! reported by NetworkManager::requestFailed() and failure(). May be called from any thread; the replies end on their own
    //! threads.
    void abort();
    bool isAborted() const;

    //! Limits the speed at which bodies are sent and responses are received, in bytes per second for each request; 0, the default,
    //! for no limit. The limits may be exceeded in the first seconds. A change takes effect with the next request.
    void setSpeedLimits(qint64 sentPerSecond, qint64 receivedPerSecond);

    //! Returns why the last request of this context that failed did so; nothing if none has failed since forgetFailure().
    std::optional<NetworkFailure> failure() const;
    void forgetFailure();

    //! Returns the context of the calling thread; null if it has none.
    static RequestContext *current();

private:
    friend class HttpReply;
    friend class RequestScope;

    class Private;
    const std::shared_ptr<Private> d;
};

//! \brief Sets the context of the calling thread until the object is destroyed.
//!
//! Scopes may be nested; the innermost is used. Create it on the stack.
//!
//! \since 0.1
//! \sa VellSoftCacheScope
class VELLNETWORK_EXPORT RequestScope
{
public:
    explicit RequestScope(RequestContext &context);
    ~RequestScope();
    Q_DISABLE_COPY(RequestScope)

private:
    RequestContext *const m_before;
};
