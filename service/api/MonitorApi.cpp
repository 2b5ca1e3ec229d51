#include <service/api/OriginCheck.h>
#include <service/api/RequestState.h>
#include <service/api/Routes.h>
#include <service/http/HttpMessages.h>
#include <service/http/Loopback.h>
#include <service/http/Router.h>
#include <service/records/Ids.h>
#include <service/records/SweepLog.h>
#include <service/storage/Statement.h>

namespace service {

namespace {

HttpResponse isServing(HttpRequest &, RequestState &)
{
    return HttpResponse::json(QJsonObject{{QStringLiteral("status"), QStringLiteral("ok")}});
}

HttpResponse isReady(HttpRequest &request, RequestState &state)
{
    if (state.context.isDraining)
        throw HttpError(503, QStringLiteral("The service is being stopped."));
    try {
        Statement(state.database, QStringLiteral("SELECT generation FROM store")).next();
    } catch (const DatabaseError &error) {
        qWarning("vell-service: %s", error.what());
        throw HttpError(503, QStringLiteral("The service cannot reach its database."));
    }
    return isServing(request, state);
}

//! Programs of this machine may read them, and others that know the token.
void requireMonitor(const HttpRequest &request, const QString &token)
{
    const QByteArray header = request.header("authorization");
    if (!token.isEmpty() && header.toLower().startsWith("bearer ")
        && secretHash(QString::fromUtf8(header.mid(7).trimmed())) == secretHash(token))
        return;
    if (!isLoopback(request.clientAddress()) || request.isForwardedByOthers) {
        throw HttpError(401,
                        QStringLiteral("The metrics are for programs of this machine, and for "
                                       "those with the token of --metrics-token."));
    }
    requireLocalOrigin(request);
}

HttpResponse metrics(HttpRequest &request, RequestState &state)
{
    const ServiceContext &context = state.context;
    requireMonitor(request, context.metricsToken);
    QByteArray text = context.metrics.text();
    Metrics::append(text, "vell_open_connections", "gauge", "Connections of clients.",
                    context.openConnections ? context.openConnections() : 0);
    Metrics::append(text, "vell_database_connections", "gauge", "Connections to the database.",
                    context.database.connectionCount());
    const SweepLog sweeps = SweepLog::read(context.folder);
    Metrics::append(text, "vell_sweeps_total", "counter", "Sweeps of the data folder.",
                    sweeps.sweeps);
    Metrics::append(text, "vell_sweep_uploads_total", "counter",
                    "Abandoned uploads that sweeps have removed.", sweeps.total.abandonedUploads);
    Metrics::append(text, "vell_sweep_contents_total", "counter",
                    "Unused contents that sweeps have removed.", sweeps.total.unusedContents);
    Metrics::append(text, "vell_sweep_bytes_total", "counter", "Bytes that sweeps have removed.",
                    sweeps.total.bytes);
    Metrics::append(text, "vell_sweep_last_timestamp_seconds", "gauge",
                    "The end of the last sweep, in seconds since 1970.", sweeps.lastMs / 1000);
    HttpResponse response;
    response.contentType = QByteArrayLiteral("text/plain; version=0.0.4; charset=utf-8");
    response.body = text;
    return response;
}

} // namespace

void addMonitorRoutes(Router &router)
{
    router.addMonitor("health", isServing);
    router.addMonitor("health/ready", isReady);
    router.addMonitor("metrics", metrics);
}

} // namespace service
