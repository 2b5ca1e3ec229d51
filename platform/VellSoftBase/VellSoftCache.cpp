#include <VellSoftBase/VellSoftCache.h>

#include <QMutexLocker>

#include <utility>

namespace {

thread_local VellSoftCacheScope *currentScope = nullptr;

} // namespace

QString VellSoftCache::currentProjectId() const
{
    if (currentScope)
        return currentScope->projectId();
    const QMutexLocker lock(&m_mutex);
    return m_currentProjectId;
}

void VellSoftCache::setCurrentProjectId(const QString &id)
{
    const QMutexLocker lock(&m_mutex);
    m_currentProjectId = id;
}

QString VellSoftCache::currentUserId() const
{
    if (currentScope)
        return currentScope->userId();
    const QMutexLocker lock(&m_mutex);
    return m_currentUserId;
}

void VellSoftCache::setCurrentUserId(const QString &id)
{
    const QMutexLocker lock(&m_mutex);
    m_currentUserId = id;
}

VellSoftCache *GetSoftCache()
{
    static VellSoftCache cache;
    return &cache;
}

VellSoftCacheScope::VellSoftCacheScope(const QString &projectId, const QString &userId)
    : m_projectId(projectId), m_userId(userId), m_before(std::exchange(currentScope, this))
{}

VellSoftCacheScope::~VellSoftCacheScope()
{
    currentScope = m_before;
}
