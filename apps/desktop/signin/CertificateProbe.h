#pragma once

#include <QList>
#include <QObject>
#include <QSslCertificate>
#include <QSslSocket>
#include <QTimer>
#include <QUrl>

namespace desktop {

//! \brief Fetches the certificates of a server, without trusting them and without sending anything else.
class CertificateProbe : public QObject
{
    Q_OBJECT

public:
    explicit CertificateProbe(QObject *parent = nullptr);

    //! Connects to the server of \a address. fetched() follows once.
    void start(const QUrl &address);

Q_SIGNALS:
    //! \param chain the certificate of the server is the first one; empty if there is none
    void fetched(const QList<QSslCertificate> &chain);

private:
    void finish();

    QSslSocket m_socket;
    QTimer m_limit;
};

} // namespace desktop
