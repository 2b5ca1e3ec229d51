#pragma once

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
    Context(const QCommandLineParser &parser, const Settings &chosen, Output &output)
        : out(output), settings(chosen), m_parser(parser)
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

    Output &out;
    const Settings settings;

private:
    const QCommandLineParser &m_parser;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<RemoteTree> m_tree;
};

} // namespace velldoc
