#pragma once

#include <QDialog>
#include <QList>
#include <QSslCertificate>

class QAbstractButton;

namespace desktop {

//! \brief Shows a server's certificates, and asks whether the authority that has signed them is to be trusted.
//!
//! Accepted if the user trusts it. The user must tick that the fingerprint has been compared.
class CertificateDialog : public QDialog
{
    Q_OBJECT

public:
    //! \param chain not empty, the server's own first
    CertificateDialog(const QString &host, const QList<QSslCertificate> &chain,
                      QWidget *parent = nullptr);

    //! The certificate that is trusted if the dialog is accepted: the last of the chain.
    const QSslCertificate &authority() const { return m_authority; }

    //! "AB:CD:…", SHA-256.
    static QString fingerprint(const QSslCertificate &certificate);

private:
    const QSslCertificate m_authority;
};

} // namespace desktop
