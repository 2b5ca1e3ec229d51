#pragma once

#include <QString>

namespace velldoc {

//! \brief Where the commands work: which service, which project, as whom.
//!
//! Each value comes from the first of: the command line, the environment (VELLDOC_URL, VELLDOC_PROJECT,
//! VELLDOC_TOKEN, VELLDOC_DATA), the user's configuration file (VELLDOC_CONFIG).
struct Settings
{
    QString url; //!< empty: a service of our own on #dataDir
    QString project;
    QString token;
    QString dataDir;

    //! What the environment and the configuration file say, and the defaults.
    static Settings load();

    //! Keeps url, project and token in the configuration file, which only its owner can read.
    //! \throws Failure
    void save() const;

    //! Removes them from there. \return whether there was anything
    static bool forget();

    static QString configPath();
};

} // namespace velldoc
