#pragma once

#include <QString>
#include <QStringList>

namespace velldoc {

class Context;

//! \brief Remembers that a command has made its target itself, so that it means the same when it is typed again.
//!
//! "put site /new" makes /new out of the folder if it is missing, and puts the folder into it if it is there. After an interruption, and
//! later too, the same command in the same folder goes on with what it has made. Kept beside the configuration file.
class OwnTargets
{
public:
    //! \param words the command line without options
    OwnTargets(const Context &context, const QStringList &words);

    //! Whether an earlier run of this command has made the folder \a id; empty for a local one.
    bool hasMade(const QString &id) const;
    //! \param id empty for a local folder, and as long as it is not known
    void noteMade(const QString &id) const;

private:
    QString m_key;
};

} // namespace velldoc
