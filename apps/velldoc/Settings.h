#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace velldoc {

//! \brief Where the commands work: which service, which project, as whom.
//!
//! Each value comes from the first of: the command line, the environment, the user's configuration file
//! (VELLDOC_CONFIG). #values has their names in each.
struct Settings
{
    QString profile; //!< the login that the values come from; empty for the one without a name
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
    //! \param profile the login whose values are taken; empty for that of VELLDOC_PROFILE, or the one without a name
    static Settings load(const QString &profile = {});

    //! The names of the logins that are remembered; an empty one first for that without a name.
    static QStringList profiles();

    //! Keeps what a login remembers in the configuration file, which only its owner can read.
    //! \throws Failure
    void save() const;

    //! Removes what a login as \a profile has remembered. \return whether there was anything
    static bool forget(const QString &profile);

    //! Writes one value of \a profile into the configuration file, or removes it if \a text is empty. \throws Failure
    static void write(const QString &profile, const QString &key, const QString &text);

    static QString configPath();
};

} // namespace velldoc
