#pragma once

#include <QVector>

namespace velldoc {

class Context;

struct CommandOption
{
    const char *names = nullptr; //!< "l,long": without dashes, the short one first
    const char *valueName = nullptr; //!< null for a flag
    const char *help = nullptr; //!< translated when it is shown
    const char *words = nullptr; //!< the possible values, separated by spaces, if these are known
};

struct CommandExample
{
    const char *line;
    const char *meaning;
};

//! \brief One command: its help, its options and its function.
//!
//! All texts are marked for translation in the context "velldoc".
struct Command
{
    const char *name;
    const char *arguments; //!< as in a usage line
    const char *summary; //!< a phrase for the list of commands
    const char *description; //!< whole sentences
    QVector<CommandOption> options;
    QVector<CommandExample> examples;
    void (*run)(Context &context); //!< throws Failure
    QVector<const char *> actions = {}; //!< words that may follow the name, for completion
    QVector<const char *> words = {}; //!< values of an argument that is not a path, for completion
};

} // namespace velldoc
