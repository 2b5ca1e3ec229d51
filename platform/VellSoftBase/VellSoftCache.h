#pragma once

#include <VellSoftBase/vellsoftbase_export.h>

#include <QString>

//! \brief What the client has open: the project and the user that requests speak of.
//!
//! Read anew for each request. For use on the user-interface thread.
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
    QString m_currentProjectId;
    QString m_currentUserId;
};

//! The one cache object of the process; never null, never to be deleted.
VELLSOFTBASE_EXPORT VellSoftCache *GetSoftCache();
