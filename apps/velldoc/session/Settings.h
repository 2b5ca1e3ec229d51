#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace velldoc {

//! \brief The service, the project, the user and the data folder of the commands.
//!
//! Each value comes from the first of these that has it: the command line, the environment, the configuration file
//! (VELLDOC_CONFIG). #values contains their names in each.
struct Settings
{
    QString profile; //!< the login of the values; empty for the one without a name
    QString url; //!< empty for the embedded service on #dataDir
    QString project;
    QString token;
    QString dataDir;
    QString caCertificates; //!< a path or empty; so are the next two
    QString certificate;
    QString key;
    QString keyPassword; //!< only from the environment
    QString proxy;

    //! A value and its sources. If a source cannot have the value, its name is null.
    struct Value
    {
        QString Settings::*member;
        const char *key; //!< in the configuration file
        const char *variable;
        const char *option; //!< of every command
        bool isFile;
        bool isLogin; //!< stored by "velldoc login"
    };
    static const QVector<Value> values;

    //! Reads the environment and the configuration file; other values are the defaults.
    //! \param profile the login; if it is empty, that of VELLDOC_PROFILE, or the one without a name
    static Settings load(const QString &profile = {});

    //! Returns the names of the stored logins; the one without a name is an empty string, the first one.
    static QStringList profiles();

    //! Stores the values of a login in the configuration file, which only its owner can read.
    //! \throws Failure
    void save() const;

    //! Removes the values of the login \a profile. \return true if there were any
    static bool forget(const QString &profile);

    //! Writes one value of \a profile into the configuration file, or removes it if \a text is empty. \throws Failure
    static void write(const QString &profile, const QString &key, const QString &text);

    static QString configPath();
};

} // namespace velldoc
