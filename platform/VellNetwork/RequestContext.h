#pragma once

#include <VellNetwork/NetworkFailure.h>
#include <VellNetwork/NetworkSettings.h>
#include <VellNetwork/vellnetwork_export.h>

#include <QString>

#include <memory>
#include <optional>

//! \brief What the requests of a RequestContext use instead of the settings of the process.
struct RequestSettings
{
    QString baseApi; //!< as VellBaseApi::setBaseApi() takes it
    QString accessToken; //!< as all that follow: see NetworkSettings
    QString caCertificates;
    ClientCertificate clientCertificate;
    QString proxy;
};

//! \brief Requests that belong together: with settings of their own, a common end, and their own failure.
//!
//! A thread that is inside a RequestScope makes its requests in that context, whichever class sends them: they
//! go to the context's address with its token, VellBaseApi::getBaseApi() and the getters of NetworkSettings return the
//! values of the context, abort() ends them, and failure() says why the last one that failed did.
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
class VELLNETWORK_EXPORT RequestContext
{
public:
    explicit RequestContext(const RequestSettings &settings);
    ~RequestContext();
    Q_DISABLE_COPY(RequestContext)

    RequestSettings settings() const;

    //! Ends the requests that are under way with QNetworkReply::OperationCanceledError, and each later one of this
    //! context as soon as it is made. Nothing of that is reported by NetworkManager::requestFailed() or failure().
    //! May be called from any thread; the replies end on theirs.
    void abort();
    bool isAborted() const;

    //! How fast bodies are sent and responses received, in bytes per second for each request; 0, the default, for as fast
    //! as the network allows. Far from exact in the first seconds, when they may be exceeded. A change takes effect with the next request.
    void setSpeedLimits(qint64 sentPerSecond, qint64 receivedPerSecond);

    //! Why the last request of this context that failed did so; nothing if none has failed since forgetFailure().
    std::optional<NetworkFailure> failure() const;
    void forgetFailure();

    //! The context of the calling thread; null if it is in none.
    static RequestContext *current();

private:
    friend class HttpReply;
    friend class RequestScope;

    class Private;
    const std::shared_ptr<Private> d;
};

//! \brief Makes a context the one of the calling thread until the scope ends.
//!
//! Scopes may be nested; the innermost counts. Lives on the stack of one thread.
class VELLNETWORK_EXPORT RequestScope
{
public:
    explicit RequestScope(RequestContext &context);
    ~RequestScope();
    Q_DISABLE_COPY(RequestScope)

private:
    RequestContext *const m_before;
};
