#include "Certificates.h"

#include <QFile>
#include <QProcess>

namespace {

const QString p256 = QStringLiteral("ec_paramgen_curve:P-256");

} // namespace

Certificates::Certificates() : m_authority(nextPair())
{
    QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7755));
    openssl({QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
             QStringLiteral("ec"), QStringLiteral("-pkeyopt"), p256, QStringLiteral("-nodes"),
             QStringLiteral("-keyout"), m_authority.key, QStringLiteral("-out"),
             m_authority.certificate, QStringLiteral("-subj"), QStringLiteral("/CN=Test Authority"),
             QStringLiteral("-days"), QStringLiteral("2")});
}

Certificates::Pair Certificates::nextPair()
{
    const QString name = QString::number(++m_count);
    return {path(name + QLatin1String(".pem")), path(name + QLatin1String(".key"))};
}

void Certificates::openssl(const QStringList &arguments) const
{
    QProcess process;
    process.start(QStringLiteral("openssl"), arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("openssl %s: %s", qPrintable(arguments.join(QLatin1Char(' '))),
               process.readAllStandardError().constData());
}

Certificates::Pair Certificates::sign(const QString &subject, const QByteArray &extensions,
                                      int days)
{
    const Pair pair = nextPair();
    const QString request = pair.certificate + QLatin1String(".csr");
    openssl({QStringLiteral("req"), QStringLiteral("-newkey"), QStringLiteral("ec"),
             QStringLiteral("-pkeyopt"), p256, QStringLiteral("-nodes"), QStringLiteral("-keyout"),
             pair.key, QStringLiteral("-out"), request, QStringLiteral("-subj"), subject});
    QFile file(path(QStringLiteral("extensions")));
    if (!file.open(QIODevice::WriteOnly) || file.write(extensions) != extensions.size())
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    file.close();
    openssl({QStringLiteral("x509"), QStringLiteral("-req"), QStringLiteral("-in"), request,
             QStringLiteral("-CA"), m_authority.certificate, QStringLiteral("-CAkey"),
             m_authority.key, QStringLiteral("-CAcreateserial"), QStringLiteral("-out"),
             pair.certificate, QStringLiteral("-days"), QString::number(days),
             QStringLiteral("-extfile"), file.fileName()});
    QFile::setPermissions(pair.key, QFile::Permissions(0x6644));
    return pair;
}

Certificates::Pair Certificates::forServer(const QString &names, int days)
{
    return sign(QStringLiteral("/CN=server"), "subjectAltName=" + names.toLatin1() + '\n', days);
}

Certificates::Pair Certificates::forClient()
{
    return sign(QStringLiteral("/CN=client"), "extendedKeyUsage=clientAuth\n", 2);
}

Certificates::Pair Certificates::selfSigned()
{
    const Pair pair = nextPair();
    openssl({QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
             QStringLiteral("ec"), QStringLiteral("-pkeyopt"), p256, QStringLiteral("-nodes"),
             QStringLiteral("-keyout"), pair.key, QStringLiteral("-out"), pair.certificate,
             QStringLiteral("-subj"), QStringLiteral("/CN=localhost"), QStringLiteral("-addext"),
             QStringLiteral("subjectAltName=DNS:localhost,IP:127.0.0.1"), QStringLiteral("-days"),
             QStringLiteral("2")});
    QFile::setPermissions(pair.key, QFile::Permissions(0x6644));
    return pair;
}

QString Certificates::pfx(const Pair &pair, const QString &password)
{
    const QString file = pair.certificate + QLatin1String(".pfx");
    openssl({QStringLiteral("pkcs12"), QStringLiteral("-export"), QStringLiteral("-in"),
             pair.certificate, QStringLiteral("-inkey"), pair.key, QStringLiteral("-out"), file,
             QStringLiteral("-passout"), QLatin1String("pass:") + password});
    return file;
}

QString Certificates::encryptedKey(const Pair &pair, const QString &password)
{
    const QString file = pair.key + QLatin1String(".encrypted");
    openssl({QStringLiteral("pkey"), QStringLiteral("-in"), pair.key, QStringLiteral("-aes256"),
             QStringLiteral("-passout"), QLatin1String("pass:") + password, QStringLiteral("-out"),
             file});
    return file;
}
