#pragma once

#include <desktop/app/AppPaths.h>
#include <desktop/signin/SavedConnection.h>

#include <QStringList>

#include <optional>

namespace desktop {

//! \brief The options of the command line and the environment.
struct StartOptions
{
    AppPaths paths;
    std::optional<SavedConnection>
        connection; //!< no value: the last connection, or the embedded service
    bool isNoService = false; //!< the sign-in dialog instead of the embedded service

    //! Reads the \a arguments, beginning with the name of the program. Ends the program after printing the help, or an error if
    //! they are not valid.
    static StartOptions fromArguments(const QStringList &arguments);
};

} // namespace desktop
