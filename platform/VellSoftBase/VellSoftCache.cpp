#include <VellSoftBase/VellSoftCache.h>

QString VellSoftCache::currentProjectId() const
{
    return m_currentProjectId;
}

void VellSoftCache::setCurrentProjectId(const QString &id)
{
    m_currentProjectId = id;
}

QString VellSoftCache::currentUserId() const
{
    return m_currentUserId;
}

void VellSoftCache::setCurrentUserId(const QString &id)
{
    m_currentUserId = id;
}

VellSoftCache *GetSoftCache()
{
    static VellSoftCache cache;
    return &cache;
}
