#pragma once

#include <QString>

namespace desktop {

//! \brief The paths of the files of the program.
struct AppPaths
{
    QString settings; //!< the file of AppSettings
    QString connections; //!< the file of ConnectionStore
    QString transfers; //!< the file of the transfer queue
    QString opened; //!< the folder of opened files
    QString ownData; //!< the data folder of the embedded service, shared with velldoc

    bool isKeyringUsed = false; //!< for tokens, if the system has a keyring

    //! Returns the standard paths of the system.
    static AppPaths standard();

    //! Returns paths below the folder \a root.
    static AppPaths below(const QString &root);
};

} // namespace desktop
