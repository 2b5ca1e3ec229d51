#include <service/http/Router.h>

#include <service/http/HttpMessages.h>

#include <utility>

namespace service {

namespace {

bool fits(const QStringList &route, const QStringList &segments, QStringList &captures)
{
    if (route.size() != segments.size())
        return false;
    captures.clear();
    for (int i = 0; i < route.size(); ++i) {
        if (route.at(i) != QLatin1String("*")) {
            if (route.at(i) != segments.at(i))
                return false;
        } else {
            if (segments.at(i).isEmpty())
                return false;
            captures.append(segments.at(i));
        }
    }
    return true;
}

} // namespace

void Router::add(const char *verb, const char *path, Handler handler)
{
    add(verb, path, std::move(handler), false);
}

void Router::addPublic(const char *verb, const char *path, Handler handler)
{
    add(verb, path, std::move(handler), true);
}

void Router::add(const char *verb, const char *path, Handler handler, bool isPublic)
{
    m_routes.push_back(
        {verb, QString::fromLatin1(path).split(QLatin1Char('/')), std::move(handler), isPublic});
}

const Router::Route &Router::find(HttpRequest &request) const
{
    QByteArray allowed;
    QStringList captures;
    for (const Route &route : m_routes) {
        if (!fits(route.segments, request.segments, captures))
            continue;
        if (route.verb == request.verb) {
            request.captures = captures;
            return route;
        }
        if (!allowed.contains(route.verb))
            allowed += (allowed.isEmpty() ? "" : ", ") + route.verb;
    }
    if (!allowed.isEmpty())
        throw MethodNotAllowed(allowed);
    throw HttpError(404, QStringLiteral("The service has no such path."));
}

} // namespace service
