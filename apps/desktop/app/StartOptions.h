#pragma once

#include <desktop/app/AppPaths.h>
#include <desktop/signin/SavedConnection.h>

#include <QStringList>

#include <optional>

namespace desktop {

//! \brief What the command line and the environment ask for.
struct StartOptions
{
    AppPaths paths;
    std::optional<SavedConnection> connection; //!< nothing: the last one, or the own service
    bool isNoService = false; //!< the sign-in dialog instead of the own service

    //! Reads the \a arguments, the program's name first. Ends the program with the help or a message if they ask for it or make
    //! no sense.
    static StartOptions fromArguments(const QStringList &arguments);
};

} // namespace desktop
