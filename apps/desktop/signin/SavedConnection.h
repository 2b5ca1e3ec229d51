#pragma once

#include <session/VellConnection.h>

#include <QMetaType>
#include <QString>

namespace desktop {

//! \brief A service that the user connects to, with the project that is open there.
struct SavedConnection
{
    QString id; //!< of this entry; empty until it is saved
    QString address;
    QString token;
    QString projectId;
    QString projectName; //!< for the lists of connections
    QString userName; //!< the same
    QString
        caCertificates; //!< the file of an authority that is trusted besides the system's; may be empty
    QString proxy; //!< see NetworkSettings
    bool isTokenInVault = false; //!< #token is empty until ConnectionStore::withToken() has read it
    bool isOwn = false; //!< the program's own service; the address is another one each time

    //! The host and the project, for lists.
    QString title() const;

    VellConnection connection() const;
};

} // namespace desktop

Q_DECLARE_METATYPE(desktop::SavedConnection)
