#pragma once

#include <session/VellConnection.h>

#include <QMetaType>
#include <QString>

namespace desktop {

//! \brief A connection to a service, with the open project.
struct SavedConnection
{
    QString id; //!< of this entry; empty until it is saved
    QString address;
    QString token;
    QString projectId;
    QString projectName; //!< for lists of connections
    QString userName; //!< for lists of connections
    QString
        caCertificates; //!< the file of an authority that is trusted in addition to those of the system; may be empty
    QString proxy; //!< see NetworkSettings
    bool isTokenInVault = false; //!< #token is empty until ConnectionStore::withToken() has read it
    bool isOwn = false; //!< the embedded service, whose address may change

    //! Returns the host and the project, for lists.
    QString title() const;

    VellConnection connection() const;
};

} // namespace desktop

Q_DECLARE_METATYPE(desktop::SavedConnection)
