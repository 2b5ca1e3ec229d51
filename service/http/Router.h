#pragma once

#include <QByteArray>
#include <QStringList>

#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace service {

struct HttpRequest;
struct HttpResponse;
class RequestState;

//! \brief Takes the body of one request piece by piece, and returns the response.
class BodySink
{
public:
    virtual ~BodySink() = default;
    virtual void write(const char *data, qint64 length) = 0;
    virtual HttpResponse finish() = 0;
};

//! \brief The functions that handle requests, by request method and path.
class Router
{
public:
    //! The whole body is in HttpRequest::body.
    using Handler = std::function<HttpResponse(HttpRequest &, RequestState &)>;
    //! Refuses a request before its body is read, for example because a right is missing. The handler must check again, because rights
    //! may change meanwhile.
    using Check = std::function<void(HttpRequest &, RequestState &)>;
    //! Creates the object that takes a large body; called before the body is read. Request and state outlive the result.
    using Uploader = std::function<std::unique_ptr<BodySink>(HttpRequest &, RequestState &)>;

    struct Route
    {
        QByteArray method;
        QStringList segments;
        Handler handler;
        Uploader uploader; //!< instead of handler
        bool isPublic = false; //!< needs no authentication
        bool hasHead = false; //!< HEAD is allowed too
        Check check;
        bool isMonitor = false; //!< needs neither authentication nor the database
    };

    //! Adds a route. If several routes match a request, the first one is used. HEAD is allowed if \a method is GET.
    //! \param path segments, with "*" for any text, which is appended to HttpRequest::captures
    void add(const char *method, const char *path, Handler handler, Check check = {});
    //! Adds a route that needs no authentication.
    void addPublic(const char *method, const char *path, Handler handler);
    //! Adds a GET for programs that watch the service: it must be answered without the database.
    void addMonitor(const char *path, Handler handler);
    //! Adds a GET that changes something: HEAD is not allowed, because it must not change anything.
    void addChangingGet(const char *path, Handler handler);
    void addUpload(const char *method, const char *path, Uploader uploader);

    //! Returns the route of \a request, and sets its captures. \throws HttpError 404 for an unknown path, and MethodNotAllowed for a
    //! known one without this request method
    const Route &find(HttpRequest &request) const;

    //! Returns the route of addMonitor() for \a request; null if there is none.
    const Route *findMonitor(const HttpRequest &request) const;

    const std::vector<Route> &routes() const { return m_routes; }

private:
    std::vector<Route> m_routes;
};

//! \brief The path exists, but not with this request method.
class MethodNotAllowed : public std::exception
{
public:
    explicit MethodNotAllowed(const QByteArray &methods) : m_methods(methods) {}
    QByteArray allowed() const { return m_methods; } //!< for the Allow header

private:
    QByteArray m_methods;
};

} // namespace service
