#pragma once

#include <operations/VellError.h>

#include <QCoreApplication>
#include <QString>

namespace desktop {

//! \brief Advice for the user about an error.
class ErrorAdvice
{
    Q_DECLARE_TR_FUNCTIONS(desktop::ErrorAdvice)

public:
    //! Returns a sentence that follows the text of \a error; empty if there is no advice.
    static QString of(const VellError &error);

    //! Returns the text of \a error with the message of the service and the advice, for a label.
    static QString fullText(const VellError &error);

    //! Returns true if the connection may succeed after an additional authority is trusted.
    static bool isCuredByTrust(const VellError &error);
};

} // namespace desktop
