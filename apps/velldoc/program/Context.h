#pragma once

#include <velldoc/documents/RemoteTree.h>
#include <velldoc/output/Output.h>
#include <velldoc/program/Command.h>
#include <velldoc/session/Session.h>

#include <QCommandLineParser>
#include <QStringList>

#include <limits>
#include <memory>

namespace velldoc {

//! \brief The environment of a command: its options and arguments, the output, and the session, which is
//! opened when it is used first.
class Context
{
public:
    Context(const Command &command, const QCommandLineParser &parser, const Settings &chosen,
            Output &output)
        : out(output), settings(chosen), m_command(command), m_parser(parser)
    {}

    Session &session();
    RemoteTree &tree();

    QStringList arguments() const { return m_parser.positionalArguments(); }

    //! Returns the arguments. \throws Failure if there are fewer than \a least or more than \a most
    QStringList arguments(int least, int most = std::numeric_limits<int>::max()) const;

    //! Returns false for an option that the command does not have.
    bool isSet(const char *option) const;
    QString value(const char *option) const { return m_parser.value(QString::fromLatin1(option)); }
    QStringList values(const char *option) const
    {
        return m_parser.values(QString::fromLatin1(option));
    }

    //! Returns the whole number of the option, or \a fallback if it is not set. \throws Failure
    int number(const char *option, int fallback) const;

    //! Returns the number of --version, or 0 if it is not set. \throws Failure
    int versionNumber() const;

    //! Returns the size or the speed of the option in bytes ("500K", "2M", "1.5G"), or 0 if it is not set. \throws Failure
    qint64 bytes(const char *option) const;

    //! Returns the value of the option, which must be one of its possible values; empty if it is not set. \throws Failure
    QString word(const char *option) const;

    //! Returns how often -v was given.
    int verbosity() const;

    //! Returns true if nothing must be changed.
    bool isDryRun() const { return isSet("dry-run"); }
    //! With --dry-run prints \a name, which would be changed, and returns true.
    bool leaves(const QString &name) const;

    Output &out;
    const Settings settings;

private:
    void requireKnownProfile() const;
    void noteNewProject() const;

    const Command &m_command;
    const QCommandLineParser &m_parser;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<RemoteTree> m_tree;
};

} // namespace velldoc
