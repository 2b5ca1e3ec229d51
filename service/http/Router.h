#pragma once

#include <QByteArray>
#include <QStringList>

#include <functional>
#include <vector>

namespace service {

struct HttpRequest;
struct HttpResponse;
class Session;

//! \brief Which function answers which verb and path.
class Router
{
public:
    using Handler = std::function<HttpResponse(HttpRequest &, Session &)>;

    //! \param path segments as they stand, or "*" for any one text, which lands in HttpRequest::captures.
    //! Of two routes that both fit, the one added first counts.
    void add(const char *verb, const char *path, Handler handler);
    //! One that is answered without asking who asks.
    void addPublic(const char *verb, const char *path, Handler handler);

    struct Route
    {
        QByteArray verb;
        QStringList segments;
        Handler handler;
        bool isPublic = false;
    };

    //! The route, with the request's captures filled. \throws HttpError 404 for an unknown path, and
    //! MethodNotAllowed for a known one that does not take the verb
    const Route &find(HttpRequest &request) const;

private:
    void add(const char *verb, const char *path, Handler handler, bool isPublic);

    std::vector<Route> m_routes;
};

//! \brief The path exists, but does not take the request's verb.
class MethodNotAllowed : public std::exception
{
public:
    explicit MethodNotAllowed(const QByteArray &verbs) : m_verbs(verbs) {}
    QByteArray allowed() const { return m_verbs; } //!< for the Allow header

private:
    QByteArray m_verbs;
};

} // namespace service
