#pragma once

#include <QDialog>
#include <QList>
#include <QSslCertificate>

class QAbstractButton;

namespace desktop {

//! \brief Shows the certificates of a server, and asks whether to trust the authority that has signed them.
//!
//! Accepted if the user trusts it. The user must confirm that the fingerprint has been compared.
class CertificateDialog : public QDialog
{
    Q_OBJECT

public:
    //! \param chain must not be empty; the certificate of the server is the first one
    CertificateDialog(const QString &host, const QList<QSslCertificate> &chain,
                      QWidget *parent = nullptr);

    //! Returns the certificate that is trusted if the dialog is accepted: the last one of the chain.
    const QSslCertificate &authority() const { return m_authority; }

    //! Returns the SHA-256 fingerprint: "AB:CD:…".
    static QString fingerprint(const QSslCertificate &certificate);

private:
    const QSslCertificate m_authority;
};

} // namespace desktop
