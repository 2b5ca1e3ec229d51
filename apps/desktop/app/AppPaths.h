#pragma once

#include <QString>

namespace desktop {

//! \brief Where the program keeps its files.
struct AppPaths
{
    QString settings; //!< the file of AppSettings
    QString connections; //!< the file of ConnectionStore
    QString transfers; //!< the file of the transfer queue
    QString opened; //!< the folder of the files that are opened and edited
    QString ownData; //!< the data folder of the program's own service, shared with velldoc

    bool isKeyringUsed = false; //!< for tokens, where there is one

    //! The places that the system has for them.
    static AppPaths standard();

    //! All of them below the folder \a root.
    static AppPaths below(const QString &root);
};

} // namespace desktop
