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
class Session;

//! \brief Takes the body of one request piece by piece, and then responds.
class BodySink
{
public:
    virtual ~BodySink() = default;
    virtual void write(const char *data, qint64 length) = 0;
    virtual HttpResponse finish() = 0;
};

//! \brief Which function answers which request method and path.
class Router
{
public:
    //! Gets the body whole, in HttpRequest::body.
    using Handler = std::function<HttpResponse(HttpRequest &, Session &)>;
    //! Refuses a request before its body is read, above all when a right is missing. The handler refuses it as well: meanwhile
    //! rights may change.
    using Check = std::function<void(HttpRequest &, Session &)>;
    //! Makes what takes a large body; called before any of it has been read. Request and session outlive the result.
    using Uploader = std::function<std::unique_ptr<BodySink>(HttpRequest &, Session &)>;

    struct Route
    {
        QByteArray verb;
        QStringList segments;
        Handler handler;
        Uploader uploader; //!< instead of handler
        bool isPublic = false; //!< needs no authentication
        bool hasHead = false; //!< takes HEAD too
        Check check;
    };

    //! \param path segments as they are, or "*" for any one text, which is put into HttpRequest::captures.
    //! Of two routes that both fit, the one added first counts. A GET takes HEAD too.
    void add(const char *verb, const char *path, Handler handler, Check check = {});
    //! Needs no authentication.
    void addPublic(const char *verb, const char *path, Handler handler);
    //! A GET that changes something: it takes no HEAD, which never may.
    void addChangingGet(const char *path, Handler handler);
    void addUpload(const char *verb, const char *path, Uploader uploader);

    //! The route, with the request's captures filled. \throws HttpError 404 for an unknown path, and
    //! MethodNotAllowed for a known one that does not take the request method
    const Route &find(HttpRequest &request) const;

    const std::vector<Route> &routes() const { return m_routes; }

private:
    std::vector<Route> m_routes;
};

//! \brief The path exists, but does not take the request method.
class MethodNotAllowed : public std::exception
{
public:
    explicit MethodNotAllowed(const QByteArray &verbs) : m_verbs(verbs) {}
    QByteArray allowed() const { return m_verbs; } //!< for the Allow header

private:
    QByteArray m_verbs;
};

} // namespace service
