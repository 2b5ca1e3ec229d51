#include <velldoc/service/EmbeddedService.h>

#include <service/ReferenceService.h>
#include <velldoc/Failure.h>
#include <velldoc/Text.h>
#include <velldoc/output/Interrupt.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace velldoc {

namespace {

constexpr int WaitForFolderMs = 5000;
constexpr std::chrono::milliseconds RetryInterval(100);

//! Where "velldoc serve" leaves its address, so that commands on the same folder find it.
QString addressFile(const QString &dataDir)
{
    return dataDir + QStringLiteral("/velldoc-serve.url");
}

QString servedAddress(const QString &dataDir)
{
    QFile file(addressFile(dataDir));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

} // namespace

class EmbeddedService::Private
{
public:
    explicit Private(const ServiceOptions &options) : service(options) {}

    ReferenceService service;
};

EmbeddedService::EmbeddedService() = default;
EmbeddedService::~EmbeddedService() = default;

QString EmbeddedService::start(const QString &dataDir)
{
    ServiceOptions options;
    options.dataDir = dataDir;
    d = std::make_unique<Private>(options);
    QElapsedTimer clock;
    clock.start();
    QString error;
    while (!d->service.start(&error)) {
        if (!ReferenceService::isInUse(dataDir))
            throw Failure(ExitFailed, error);
        QString address = servedAddress(dataDir);
        if (!address.isEmpty())
            return address;
        if (clock.hasExpired(WaitForFolderMs)) {
            throw Failure(
                ExitFailed,
                Text::tr("Another velldoc is working on %1: try again when it has finished, or "
                         "share the folder with \"velldoc serve\".")
                    .arg(dataDir));
        }
        Interrupt::pause(RetryInterval);
    }
    QFile::remove(addressFile(dataDir)); // of a server that was killed
    return d->service.baseApi();
}

bool EmbeddedService::isRunning() const
{
    return d && d->service.port() != 0;
}

void EmbeddedService::serve(const QString &dataDir, const QString &address,
                            const std::function<void(const QString &)> &announce)
{
    ServiceOptions options;
    options.dataDir = dataDir;
    if (!options.setListen(address)) {
        throw Failure(ExitUsage,
                      Text::tr("\"%1\" is no address: write it like 127.0.0.1:8080.").arg(address));
    }
    d = std::make_unique<Private>(options);
    QString error;
    if (!d->service.start(&error))
        throw Failure(ExitFailed, error);
    QSaveFile file(addressFile(dataDir));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(d->service.baseApi().toUtf8());
        file.commit();
    }
    announce(d->service.baseApi());
    QEventLoop().exec(); // until Interrupt ends it
    QFile::remove(addressFile(dataDir));
    d->service.stop();
}

} // namespace velldoc
