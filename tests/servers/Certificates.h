#pragma once

#include <QString>
#include <QTemporaryDir>

//! \brief A certificate authority of its own, and what it signs.
class Certificates
{
public:
    //! A certificate and its private key, both PEM files that everybody may read.
    struct Pair
    {
        QString certificate;
        QString key;
    };

    Certificates();

    //! The authority's own certificate.
    QString authority() const { return m_authority.certificate; }

    //! For servers at \a names, as in "DNS:localhost,IP:127.0.0.1"; expired when \a days is negative.
    Pair forServer(const QString &names, int days = 2);
    Pair forClient();
    //! Signed by nobody else, for "localhost" and 127.0.0.1.
    Pair selfSigned();

    //! \a pair as a PFX file. \return its path
    QString pfx(const Pair &pair, const QString &password);
    //! The key of \a pair, encrypted. \return its path
    QString encryptedKey(const Pair &pair, const QString &password);

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    Pair nextPair();
    Pair sign(const QString &subject, const QByteArray &extensions, int days);
    void openssl(const QStringList &arguments) const;

    QTemporaryDir m_folder;
    int m_count = 0;
    Pair m_authority;
};
