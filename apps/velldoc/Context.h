#pragma once

#include <velldoc/Command.h>
#include <velldoc/RemoteTree.h>
#include <velldoc/Session.h>
#include <velldoc/output/Output.h>

#include <QCommandLineParser>
#include <QStringList>

#include <memory>

namespace velldoc {

//! \brief What a command has to work with: its options and arguments, the output, and the service, which is
//! reached when it is first asked for.
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

    //! The arguments, at least \a least of them and, unless it is 0, at most \a most. \throws Failure
    QStringList arguments(int least, int most) const;

    bool isSet(const char *option) const { return m_parser.isSet(QString::fromLatin1(option)); }
    QString value(const char *option) const { return m_parser.value(QString::fromLatin1(option)); }
    QStringList values(const char *option) const
    {
        return m_parser.values(QString::fromLatin1(option));
    }

    //! The option's whole number, \a fallback without it. \throws Failure
    int number(const char *option, int fallback) const;

    //! The number of --version, 0 without it. \throws Failure
    int versionNumber() const;

    //! The option's size or rate in bytes ("500K", "2M", "1.5G"), 0 without it. \throws Failure
    qint64 bytes(const char *option) const;

    //! The option's text, which must be one of the words of the command's table; empty without it. \throws Failure
    QString word(const char *option) const;

    //! How often -v was given.
    int verbosity() const;

    //! Whether nothing is to be changed.
    bool isDryRun() const;
    //! With --dry-run prints \a name, which would have been changed, and returns true.
    bool leaves(const QString &name) const;

    Output &out;
    const Settings settings;

private:
    void noteNewProject() const;

    const Command &m_command;
    const QCommandLineParser &m_parser;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<RemoteTree> m_tree;
};

} // namespace velldoc
