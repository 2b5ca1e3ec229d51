#pragma once

#include <VellSoftBase/vellsoftbase_export.h>

#include <QMutex>
#include <QString>

//! \brief What the client has open: the project and the user that requests speak of.
//!
//! Read anew for each request. On a thread that is inside a VellSoftCacheScope the getters return the values of the
//! scope. Thread-safe.
class VELLSOFTBASE_EXPORT VellSoftCache
{
public:
    //! The identifier of the open project; empty while none is open.
    QString currentProjectId() const;
    void setCurrentProjectId(const QString &id);

    //! The identifier of the user who is logged in; empty while nobody is.
    QString currentUserId() const;
    void setCurrentUserId(const QString &id);

private:
    mutable QMutex m_mutex;
    QString m_currentProjectId;
    QString m_currentUserId;
};

//! The one cache object of the process; never null, never to be deleted.
VELLSOFTBASE_EXPORT VellSoftCache *GetSoftCache();

//! \brief Gives the thread that makes it a project and a user of its own until it is destroyed.
//!
//! A change of the process's project does not reach the thread meanwhile. Scopes may be nested; the innermost counts.
//! Lives on the stack of one thread.
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
