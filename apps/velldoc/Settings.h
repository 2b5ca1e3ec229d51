#pragma once

#include <QString>
#include <QVector>

namespace velldoc {

//! \brief Where the commands work: which service, which project, as whom.
//!
//! Each value comes from the first of: the command line, the environment, the user's configuration file
//! (VELLDOC_CONFIG). #values has their names in each.
struct Settings
{
    QString url; //!< empty: a service of our own on #dataDir
    QString project;
    QString token;
    QString dataDir;
    QString caCertificates; //!< as the following, a path or empty
    QString certificate;
    QString key;
    QString keyPassword; //!< only from the environment
    QString proxy;

    //! One value and where it comes from. What a source cannot give has no name there.
    struct Value
    {
        QString Settings::*member;
        const char *key; //!< in the configuration file
        const char *variable;
        const char *option; //!< of every command
        bool isFile;
        bool isLogin; //!< "velldoc login" remembers it
    };
    static const QVector<Value> values;

    //! What the environment and the configuration file say, and the defaults.
    static Settings load();

    //! Keeps what a login remembers in the configuration file, which only its owner can read.
    //! \throws Failure
    void save() const;

    //! Removes them from there. \return whether there was anything
    static bool forget();

    static QString configPath();
};

} // namespace velldoc
