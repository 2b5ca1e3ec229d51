#pragma once

#include <sync/VellPathFilter.h>
#include <sync/VellSyncPlan.h>

#include <QString>
#include <QStringList>

namespace velldoc {

class Context;

//! \brief The values of --include, --exclude and --ignore-file.
struct FilterOptions
{
    explicit FilterOptions(const Context &context);

    QStringList include;
    QStringList exclude;
    QString ignoreFile; //!< its name; empty for none

    //! Returns the filter for the local folder \a root. \throws Failure if its ignore file cannot be read
    VellPathFilter filterFor(const QString &root) const;

    //! Returns the options of a comparison with these filters.
    VellSyncOptions syncOptions() const;
};

} // namespace velldoc
