#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <mutex>

//! \brief The target names of running transfers, by folder, so that no two transfers use the same name. Thread-safe.
class NameClaims
{
public:
    //! The identifier of a local folder is its path; that of a folder on the service begins with "remote:".
    static QString remoteFolder(const QString &folderId)
    {
        return QStringLiteral("remote:") + folderId;
    }

    //! \return false if another transfer has claimed \a name
    bool claim(qint64 transfer, const QString &folder, const QString &name);

    QStringList namesIn(const QString &folder) const;

    //! Releases the claims of \a transfer. \return their keys
    QStringList release(qint64 transfer);

    //! Returns one string for a folder and a name in it.
    static QString key(const QString &folder, const QString &name)
    {
        return folder + QLatin1Char('\n') + name;
    }

private:
    struct Claim
    {
        QString folder;
        QString name;
    };

    mutable std::mutex m_mutex;
    QHash<QString, QHash<QString, qint64>> m_owners; // by folder and name
    QMultiHash<qint64, Claim> m_claims;
};
