#pragma once

#include <QString>

#include <exception>

namespace velldoc {

//! What the program returns to the shell. Documented in the manual page: never renumber.
enum ExitCode {
    ExitOk = 0,
    ExitFailed = 1,
    ExitUsage = 2,
    ExitNotFound = 3,
    ExitNotAllowed = 4,
    ExitNoConnection = 5,
    ExitDifferent = 6, //!< what was compared is not equal
    ExitHangUp = 129, //!< the terminal is gone (SIGHUP), as shells count it; so the next ones
    ExitInterrupted = 130, //!< Ctrl-C (SIGINT)
    ExitTerminated = 143, //!< SIGTERM
};

inline bool isInterruption(ExitCode code)
{
    return code == ExitInterrupted || code == ExitTerminated || code == ExitHangUp;
}

//! \brief Why a command cannot go on: one sentence for the user, and the exit code.
//!
//! Thrown by commands and what they call, never out of a slot.
class Failure : public std::exception
{
public:
    //! \param cause the part of the sentence that does not say what to do; the whole when empty
    Failure(ExitCode code, const QString &sentence, int httpStatus = 0, const QString &cause = {})
        : m_code(code), m_sentence(sentence), m_cause(cause.isEmpty() ? sentence : cause),
          m_httpStatus(httpStatus)
    {}

    ExitCode code() const { return m_code; }
    QString sentence() const { return m_sentence; }
    QString cause() const { return m_cause; }
    int httpStatus() const { return m_httpStatus; } //!< 0 when the service said nothing
    const char *what() const noexcept override { return "velldoc::Failure"; }

private:
    ExitCode m_code;
    QString m_sentence;
    QString m_cause;
    int m_httpStatus;
};

} // namespace velldoc
