#include <embedded_service/EmbeddedService.h>

class EmbeddedService::Private
{};

EmbeddedService::EmbeddedService() = default;
EmbeddedService::~EmbeddedService() = default;

bool EmbeddedService::isAvailable()
{
    return false;
}

EmbeddedService::Outcome EmbeddedService::start(const QString &, const QString &)
{
    return Outcome::Missing;
}

void EmbeddedService::announce() {}

void EmbeddedService::stop() {}

bool EmbeddedService::isRunning() const
{
    return false;
}
