#include <desktop/signin/CertificateProbe.h>

namespace desktop {

namespace {

constexpr int LimitMs = 15000;
constexpr quint16 HttpsPort = 443;

} // namespace

CertificateProbe::CertificateProbe(QObject *parent) : QObject(parent)
{
    m_socket.setPeerVerifyMode(QSslSocket::VerifyNone);
    m_limit.setSingleShot(true);
    m_limit.setInterval(LimitMs);
    connect(&m_limit, &QTimer::timeout, this, &CertificateProbe::finish);
    connect(&m_socket, &QSslSocket::encrypted, this, &CertificateProbe::finish);
    connect(&m_socket, &QSslSocket::errorOccurred, this, &CertificateProbe::finish);
}

void CertificateProbe::start(const QUrl &address)
{
    m_limit.start();
    m_socket.connectToHostEncrypted(address.host(), quint16(address.port(HttpsPort)));
}

void CertificateProbe::finish()
{
    if (!m_limit.isActive())
        return;
    m_limit.stop();
    const QList<QSslCertificate> chain = m_socket.peerCertificateChain();
    m_socket.disconnect(this);
    m_socket.abort();
    Q_EMIT fetched(chain);
}

} // namespace desktop
