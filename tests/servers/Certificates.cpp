#include "Certificates.h"

#include <QFile>
#include <QProcess>

namespace {

const QString p256 = "ec_paramgen_curve:P-256";

} // namespace

Certificates::Certificates() : m_authority(nextPair())
{
    QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7755));
    openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", p256, "-nodes", "-keyout",
             m_authority.key, "-out", m_authority.certificate, "-subj", "/CN=Test Authority",
             "-days", "2"});
}

Certificates::Pair Certificates::nextPair()
{
    const QString name = QString::number(++m_count);
    return {path(name + QLatin1String(".pem")), path(name + QLatin1String(".key"))};
}

void Certificates::openssl(const QStringList &arguments) const
{
    QProcess process;
    process.start("openssl", arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("openssl %s: %s", qPrintable(arguments.join(QLatin1Char(' '))),
               process.readAllStandardError().constData());
}

Certificates::Pair Certificates::sign(const QString &subject, const QByteArray &extensions,
                                      int days)
{
    const Pair pair = nextPair();
    const QString request = pair.certificate + QLatin1String(".csr");
    openssl({"req", "-newkey", "ec", "-pkeyopt", p256, "-nodes", "-keyout", pair.key, "-out",
             request, "-subj", subject});
    QFile file(path("extensions"));
    if (!file.open(QIODevice::WriteOnly) || file.write(extensions) != extensions.size())
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    file.close();
    openssl({"x509", "-req", "-in", request, "-CA", m_authority.certificate, "-CAkey",
             m_authority.key, "-CAcreateserial", "-out", pair.certificate, "-days",
             QString::number(days), "-extfile", file.fileName()});
    QFile::setPermissions(pair.key, QFile::Permissions(0x6644));
    return pair;
}

Certificates::Pair Certificates::forServer(const QString &names, int days)
{
    return sign("/CN=server", "subjectAltName=" + names.toLatin1() + '\n', days);
}

Certificates::Pair Certificates::forClient()
{
    return sign("/CN=client", "extendedKeyUsage=clientAuth\n", 2);
}

Certificates::Pair Certificates::selfSigned()
{
    const Pair pair = nextPair();
    openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", p256, "-nodes", "-keyout", pair.key,
             "-out", pair.certificate, "-subj", "/CN=localhost", "-addext",
             "subjectAltName=DNS:localhost,IP:127.0.0.1", "-days", "2"});
    QFile::setPermissions(pair.key, QFile::Permissions(0x6644));
    return pair;
}

QString Certificates::pfx(const Pair &pair, const QString &password)
{
    const QString file = pair.certificate + QLatin1String(".pfx");
    openssl({"pkcs12", "-export", "-in", pair.certificate, "-inkey", pair.key, "-out", file,
             "-passout", QLatin1String("pass:") + password});
    return file;
}

QString Certificates::encryptedKey(const Pair &pair, const QString &password)
{
    const QString file = pair.key + QLatin1String(".encrypted");
    openssl({"pkey", "-in", pair.key, "-aes256", "-passout", QLatin1String("pass:") + password,
             "-out", file});
    return file;
}
