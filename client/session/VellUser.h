#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

//! \brief A project that the user may open.
//!
//! \since 0.1
//! \sa VellUser::projects
struct VellProject
{
    QString id;
    QString name;
    QString role; //!< the role of the user: "viewer", "contributor", "editor" or "owner"
};

//! \brief A user of the service.
//!
//! \since 0.1
//! \sa VellSession::user()
struct VellUser
{
    QString id; //!< empty if the service does not report it
    QString name;
    QList<VellProject> projects; //!< of the signed-in user; empty for other users
};

Q_DECLARE_METATYPE(VellProject)
Q_DECLARE_METATYPE(VellUser)
