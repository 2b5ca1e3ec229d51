#pragma once

#include <operations/VellError.h>

#include <QCoreApplication>
#include <QString>

namespace desktop {

//! \brief What the user can do about an error, in words.
class ErrorAdvice
{
    Q_DECLARE_TR_FUNCTIONS(desktop::ErrorAdvice)

public:
    //! A sentence that follows the text of \a error; empty if there is nothing to advise.
    static QString of(const VellError &error);

    //! The text of \a error with the words of the service and the advice, for a label.
    static QString fullText(const VellError &error);

    //! Returns whether trusting an authority of the user's own can make the connection possible.
    static bool isCuredByTrust(const VellError &error);
};

} // namespace desktop
