#pragma once

#include <VellSoftBase/vellsoftbase_export.h>

#include <QMutex>
#include <QString>

//! \brief The open project and the current user of the client.
//!
//! Each request uses the values at the time when it is sent. On a thread that is inside a VellSoftCacheScope the getters return
//! the values of the scope. Thread-safe.
//!
//! \since 0.1
class VELLSOFTBASE_EXPORT VellSoftCache
{
public:
    //! The identifier of the open project; empty if none is open.
    QString currentProjectId() const;
    void setCurrentProjectId(const QString &id);

    //! The identifier of the user who is logged in; empty if nobody is.
    QString currentUserId() const;
    void setCurrentUserId(const QString &id);

private:
    mutable QMutex m_mutex;
    QString m_currentProjectId;
    QString m_currentUserId;
};

//! Returns the cache object of the process. It is never null and must not be deleted.
//! \since 0.1
VELLSOFTBASE_EXPORT VellSoftCache *GetSoftCache();

//! \brief Sets a project and a user for the calling thread until the object is destroyed.
//!
//! The values of GetSoftCache() have no effect on the thread meanwhile. Scopes may be nested; the innermost is used. Create it on
//! the stack.
//!
//! \since 0.1
//! \sa RequestScope
class VELLSOFTBASE_EXPORT VellSoftCacheScope
{
public:
    VellSoftCacheScope(const QString &projectId, const QString &userId);
    ~VellSoftCacheScope();
    Q_DISABLE_COPY(VellSoftCacheScope)

    QString projectId() const { return m_projectId; }
    QString userId() const { return m_userId; }

private:
    const QString m_projectId;
    const QString m_userId;
    VellSoftCacheScope *const m_before;
};
