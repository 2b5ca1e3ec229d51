#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

//! \brief A project that the user may open.
struct VellProject
{
    QString id;
    QString name;
    QString role; //!< the user's: "viewer", "contributor", "editor" or "owner"
};

//! \brief A person who uses the service.
struct VellUser
{
    QString id; //!< empty if the service does not tell
    QString name;
    QList<VellProject> projects; //!< of the signed-in user; empty for others
};

Q_DECLARE_METATYPE(VellProject)
Q_DECLARE_METATYPE(VellUser)
