#include <service/api/ErrorResponse.h>

#include <service/http/HttpMessages.h>
#include <service/http/Router.h>
#include <service/records/ServiceError.h>
#include <service/storage/Database.h>
#include <service/storage/FileSync.h>

namespace service {

namespace {

int statusOf(Refusal kind)
{
    switch (kind) {
    case Refusal::Invalid:
        return 400;
    case Refusal::Forbidden:
        return 403;
    case Refusal::NotFound:
        return 404;
    case Refusal::Conflict:
        return 409;
    case Refusal::Gone:
        return 410;
    case Refusal::Mismatch:
        return 422;
    }
    return 500;
}

constexpr int RetryAfterSeconds = 2;

//! The response to a failure of the disk or the database; both classes have the same functions.
template <typename Error>
HttpResponse diskResponse(const Error &error)
{
    if (error.isFull())
        return HttpResponse::error(507, QStringLiteral("The service has no room left."));
    if (error.isReadOnly())
        return HttpResponse::error(507, QStringLiteral("The service's disk is read-only."));
    return HttpResponse::error(500, QStringLiteral("The service failed; its log says why."));
}

HttpResponse tryAgainResponse(const QString &sentence)
{
    HttpResponse response = HttpResponse::error(503, sentence);
    response.addHeader("Retry-After", QByteArray::number(RetryAfterSeconds));
    return response;
}

HttpResponse databaseResponse(const DatabaseError &error)
{
    if (error.kind() == DatabaseError::Kind::Busy)
        return tryAgainResponse(QStringLiteral("The service is busy; please try again."));
    if (error.kind() == DatabaseError::Kind::Lost) {
        return tryAgainResponse(
            QStringLiteral("The service cannot reach its database; please try again."));
    }
    if (error.kind() == DatabaseError::Kind::NoConnection) {
        return tryAgainResponse(QStringLiteral(
            "All connections of the service to its database are in use; please try again."));
    }
    if (error.kind() == DatabaseError::Kind::Slow) {
        return tryAgainResponse(QStringLiteral(
            "The database needed too long for this; please ask for less, or try again."));
    }
    if (error.kind() == DatabaseError::Kind::BadText) {
        return HttpResponse::error(
            400, QStringLiteral("A text has the character NUL, which cannot be stored."));
    }
    return diskResponse(error);
}

HttpResponse refusal(const HttpError &error)
{
    HttpResponse response = HttpResponse::error(error);
    if (error.status() == 401)
        response.addHeader("WWW-Authenticate", "Bearer realm=\"documents\"");
    else if (error.status() == 503)
        response.addHeader("Retry-After", "1");
    return response;
}

} // namespace

HttpResponse errorResponse(const std::exception &error)
{
    const QString sentence = QString::fromUtf8(error.what());
    if (const auto *refused = dynamic_cast<const ServiceError *>(&error))
        return HttpResponse::error(statusOf(refused->kind()), sentence);
    if (const auto *refused = dynamic_cast<const HttpError *>(&error))
        return refusal(*refused);
    if (const auto *wrongMethod = dynamic_cast<const MethodNotAllowed *>(&error)) {
        HttpResponse response = HttpResponse::error(
            405, QStringLiteral("This path does not take that request method."));
        response.addHeader("Allow", wrongMethod->allowed());
        return response;
    }
    qWarning("vell-service: %s", error.what());
    if (const auto *storage = dynamic_cast<const StorageError *>(&error))
        return diskResponse(*storage);
    if (const auto *database = dynamic_cast<const DatabaseError *>(&error))
        return databaseResponse(*database);
    return HttpResponse::error(500, QStringLiteral("The service failed; its log says why."));
}

} // namespace service
