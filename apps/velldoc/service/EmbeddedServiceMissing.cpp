#include <velldoc/Failure.h>
#include <velldoc/Text.h>
#include <velldoc/service/EmbeddedService.h>

namespace velldoc {

namespace {

[[noreturn]] void refuse()
{
    throw Failure(
        ExitUsage,
        Text::tr("This velldoc was built without a service of its own: name one with --url, "
                 "for example one started with \"vell-service --data DIR\"."));
}

} // namespace

class EmbeddedService::Private
{};

EmbeddedService::EmbeddedService() = default;
EmbeddedService::~EmbeddedService() = default;

QString EmbeddedService::start(const QString &)
{
    refuse();
}

bool EmbeddedService::isRunning() const
{
    return false;
}

void EmbeddedService::serve(const QString &, const QString &,
                            const std::function<void(const QString &)> &)
{
    refuse();
}

} // namespace velldoc
