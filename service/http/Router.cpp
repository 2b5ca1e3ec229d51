#include <service/http/Router.h>

#include <service/http/HttpMessages.h>

#include <algorithm>
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

QStringList segmentsOf(const char *path)
{
    return QString::fromLatin1(path).split(QLatin1Char('/'));
}

bool isGet(const char *method)
{
    return qstrcmp(method, "GET") == 0;
}

} // namespace

void Router::add(const char *method, const char *path, Handler handler, Check check)
{
    m_routes.push_back({method,
                        segmentsOf(path),
                        std::move(handler),
                        {},
                        false,
                        isGet(method),
                        std::move(check),
                        false});
}

void Router::addPublic(const char *method, const char *path, Handler handler)
{
    m_routes.push_back(
        {method, segmentsOf(path), std::move(handler), {}, true, isGet(method), {}, false});
}

void Router::addMonitor(const char *path, Handler handler)
{
    m_routes.push_back({"GET", segmentsOf(path), std::move(handler), {}, true, true, {}, true});
}

void Router::addChangingGet(const char *path, Handler handler)
{
    m_routes.push_back({"GET", segmentsOf(path), std::move(handler), {}, false, false, {}, false});
}

void Router::addUpload(const char *method, const char *path, Uploader uploader)
{
    m_routes.push_back(
        {method, segmentsOf(path), {}, std::move(uploader), false, false, {}, false});
}

const Router::Route *Router::findMonitor(const HttpRequest &request) const
{
    if (request.isOutside)
        return nullptr;
    const auto found = std::find_if(m_routes.begin(), m_routes.end(), [&](const Route &route) {
        return route.isMonitor && route.method == request.method
            && route.segments == request.segments;
    });
    return found == m_routes.end() ? nullptr : &*found;
}

const Router::Route &Router::find(HttpRequest &request) const
{
    QList<QByteArray> allowed;
    QStringList captures;
    for (const Route &route : m_routes) {
        if (request.isOutside || !fits(route.segments, request.segments, captures))
            continue;
        if (route.method == request.method && (route.hasHead || !request.isHead)) {
            request.captures = captures;
            return route;
        }
        if (!allowed.contains(route.method))
            allowed.append(route.method);
        if (route.hasHead && !allowed.contains("HEAD"))
            allowed.append("HEAD");
    }
    if (!allowed.isEmpty())
        throw MethodNotAllowed(allowed.join(", "));
    throw HttpError(404, QStringLiteral("The service has no such path."));
}

} // namespace service
