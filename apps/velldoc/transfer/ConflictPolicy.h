#pragma once

#include <QString>

namespace velldoc {

class Context;

//! What to do with a file whose name is already taken at its target.
enum class Conflict { Ask, Replace, Rename, Skip, Cancel };

//! \brief Decides this for each file of a batch: by the option, or by asking the user, who may answer for all following files.
class ConflictPolicy
{
public:
    //! Reads --on-conflict and --update. Without these options it asks on a terminal, and otherwise cancels.
    //! \throws Failure
    explicit ConflictPolicy(const Context &context);

    //! The conflict of a file.
    struct Question
    {
        QString remotePath;
        QString newName; //!< the name for Rename
        bool canReplace = false; //!< false if the existing entry is a folder
        QString there; //!< size and time of the existing entry; may be empty
        QString here; //!< size and time of the file
    };

    //! Returns true if all conflicts are decided by renaming.
    bool renames() const { return m_policy == Conflict::Rename; }

    //! Returns the decision, never Ask.
    Conflict decide(const Question &question);

private:
    Conflict ask(const Question &question);

    Conflict m_policy = Conflict::Ask;
};

} // namespace velldoc
