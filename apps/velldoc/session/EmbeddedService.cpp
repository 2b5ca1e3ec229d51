#include <velldoc/session/EmbeddedService.h>

#include <velldoc/program/Failure.h>
#include <velldoc/program/Text.h>
#include <velldoc/system/Interrupt.h>

#include <QElapsedTimer>
#include <QEventLoop>

namespace velldoc {

namespace {

using Outcome = ::EmbeddedService::Outcome;

constexpr int WaitForFolderMs = 5000;
constexpr std::chrono::milliseconds RetryInterval(100);

[[noreturn]] void refuseMissing()
{
    throw Failure(ExitUsage,
                  Text::tr("This velldoc was built without a service: pass the address of one with "
                           "--url, for example of one started with \"vell-service --data DIR\"."));
}

} // namespace

QString EmbeddedService::start(const QString &dataDir)
{
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        const Outcome outcome = m_service.start(dataDir);
        if (outcome == Outcome::Started || outcome == Outcome::Shared)
            return m_service.address();
        if (outcome == Outcome::Missing)
            refuseMissing();
        if (outcome == Outcome::Failed)
            throw Failure(ExitFailed, m_service.error());
        if (clock.hasExpired(WaitForFolderMs)) {
            throw Failure(ExitFailed,
                          Text::tr("Another velldoc is using %1: try again when it has finished, "
                                   "or share the folder with \"velldoc serve\".")
                              .arg(dataDir));
        }
        Interrupt::pause(RetryInterval);
    }
}

void EmbeddedService::serve(const QString &dataDir, const QString &address,
                            const std::function<void(const QString &)> &announce)
{
    switch (m_service.start(dataDir, address)) {
    case Outcome::Started:
        break;
    case Outcome::BadAddress:
        throw Failure(
            ExitUsage,
            Text::tr("\"%1\" is not an address: write it like 127.0.0.1:8080.").arg(address));
    case Outcome::Missing:
        refuseMissing();
    default:
        throw Failure(ExitFailed, m_service.error());
    }
    m_service.announce();
    announce(m_service.address());
    QEventLoop().exec(); // until Interrupt ends it
    m_service.stop();
}

} // namespace velldoc
