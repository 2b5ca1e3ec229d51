#include <transfer/NameClaims.h>

bool NameClaims::claim(qint64 transfer, const QString &folder, const QString &name)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    qint64 &owner = m_owners[folder][name];
    if (owner != 0)
        return owner == transfer;
    owner = transfer;
    m_claims.insert(transfer, {folder, name});
    return true;
}

QStringList NameClaims::namesIn(const QString &folder) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_owners.value(folder).keys();
}

QStringList NameClaims::release(qint64 transfer)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const QList<Claim> claims = m_claims.values(transfer);
    m_claims.remove(transfer);
    QStringList keys;
    for (const Claim &claim : claims) {
        const auto names = m_owners.find(claim.folder);
        names->remove(claim.name);
        if (names->isEmpty())
            m_owners.erase(names);
        keys.append(key(claim.folder, claim.name));
    }
    return keys;
}
