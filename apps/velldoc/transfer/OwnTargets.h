#pragma once

#include <QString>
#include <QStringList>

namespace velldoc {

class Context;

//! \brief Remembers that a command has created its target, so that the same command has the same effect when it is repeated.
//!
//! "put site /new" creates /new from the folder if it does not exist, and otherwise puts the folder into it. After an
//! interruption, and later, too, the same command in the same folder continues with the target that it has created. Stored next
//! to the configuration file.
class OwnTargets
{
public:
    //! \param words the command line without options
    OwnTargets(const Context &context, const QStringList &words);

    //! Returns true if an earlier run of this command has created the folder \a id; empty for a local one.
    bool hasMade(const QString &id) const;
    //! \param id empty for a local folder, or if it is not known yet
    void noteMade(const QString &id) const;

private:
    QString m_key;
};

} // namespace velldoc
