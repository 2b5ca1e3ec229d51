#pragma once

#include <QString>

namespace velldoc {

class Context;

//! What to do about a file whose name is taken at its target.
enum class Conflict { Ask, Replace, Rename, Skip, Cancel };

//! \brief Decides it for each file of a batch: by the option, or by asking, with "for all the following".
class ConflictPolicy
{
public:
    //! Reads --on-conflict and --update; without them asks on a terminal and cancels elsewhere.
    //! \throws Failure
    explicit ConflictPolicy(const Context &context);

    //! What is in the way of a file.
    struct Question
    {
        QString remotePath;
        QString newName; //!< the name that Rename would give
        bool canReplace = false; //!< false when a folder is in the way
        QString there; //!< size and time of what is there; may be empty
        QString here; //!< of the file
    };

    //! Whether all conflicts end with a free name.
    bool renames() const { return m_policy == Conflict::Rename; }

    //! Never Ask.
    Conflict decide(const Question &question);

private:
    Conflict ask(const Question &question);

    Conflict m_policy = Conflict::Ask;
};

} // namespace velldoc
