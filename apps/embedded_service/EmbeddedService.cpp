#include <embedded_service/EmbeddedService.h>

#include <service/ReferenceService.h>

#include <QFile>
#include <QSaveFile>

namespace {

//! Returns the path of the file with the address of the program that serves the folder.
QString addressFile(const QString &dataDir)
{
    return dataDir + QStringLiteral("/velldoc-serve.url");
}

QString announcedAddress(const QString &dataDir)
{
    QFile file(addressFile(dataDir));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

} // namespace

class EmbeddedService::Private
{
public:
    explicit Private(const ServiceOptions &options) : dataDir(options.dataDir), service(options) {}

    const QString dataDir;
    ReferenceService service;
    bool isAnnounced = false;
};

EmbeddedService::EmbeddedService() = default;

EmbeddedService::~EmbeddedService()
{
    stop();
}

bool EmbeddedService::isAvailable()
{
    return true;
}

EmbeddedService::Outcome EmbeddedService::start(const QString &dataDir,
                                                const QString &listenAddress)
{
    stop();
    ServiceOptions options;
    options.dataDir = dataDir;
    if (!listenAddress.isEmpty() && !options.setListen(listenAddress))
        return Outcome::BadAddress;
    d = std::make_unique<Private>(options);
    if (d->service.start(&m_error)) {
        QFile::remove(addressFile(dataDir)); // left by a service that was killed
        m_address = d->service.baseApi();
        return Outcome::Started;
    }
    d.reset();
    if (!ReferenceService::isInUse(dataDir))
        return Outcome::Failed;
    m_address = announcedAddress(dataDir);
    return m_address.isEmpty() ? Outcome::InUse : Outcome::Shared;
}

void EmbeddedService::announce()
{
    if (!isRunning())
        return;
    QSaveFile file(addressFile(d->dataDir));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(m_address.toUtf8());
        d->isAnnounced = file.commit();
    }
}

void EmbeddedService::stop()
{
    if (!isRunning())
        return;
    if (d->isAnnounced)
        QFile::remove(addressFile(d->dataDir));
    d.reset();
    m_address.clear();
}

bool EmbeddedService::isRunning() const
{
    return d != nullptr;
}
