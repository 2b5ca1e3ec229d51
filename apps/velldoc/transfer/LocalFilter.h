#pragma once

#include <sync/VellPathFilter.h>

#include <QString>
#include <QStringList>

namespace velldoc {

class Context;

//! \brief What --include, --exclude and --ignore-file say about the entries of folders.
struct FilterOptions
{
    explicit FilterOptions(const Context &context);

    QStringList include;
    QStringList exclude;
    QString ignoreFile; //!< its name; empty for none

    //! For the local folder \a root. \throws Failure when its ignore file cannot be read
    VellPathFilter filterFor(const QString &root) const;
};

} // namespace velldoc
