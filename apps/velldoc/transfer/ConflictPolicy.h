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

    //! Never Ask. \param newName the name that Rename would give
    //! \param canReplace false when a folder is in the way
    Conflict decide(const QString &remotePath, const QString &newName, bool canReplace);

private:
    Conflict ask(const QString &remotePath, const QString &newName, bool canReplace);

    Conflict m_policy = Conflict::Ask;
};

} // namespace velldoc
