#pragma once

#include <QString>

#include <exception>

namespace velldoc {

//! The exit codes. The manual page describes them: never change the numbers.
enum ExitCode {
    ExitOk = 0,
    ExitFailed = 1,
    ExitUsage = 2,
    ExitNotFound = 3,
    ExitNotAllowed = 4,
    ExitNoConnection = 5,
    ExitDifferent = 6, //!< the compared folders differ
    ExitHangUp =
        129, //!< the terminal was closed (SIGHUP); 128 + the number of the signal, as in shells
    ExitInterrupted = 130, //!< Ctrl-C (SIGINT)
    ExitTerminated = 143, //!< SIGTERM
};

inline bool isInterruption(ExitCode code)
{
    return code == ExitInterrupted || code == ExitTerminated || code == ExitHangUp;
}

//! \brief The failure of a command: one sentence for the user, and the exit code.
//!
//! Thrown by commands and by functions that they call, never in a slot.
class Failure : public std::exception
{
public:
    //! \param cause the part of the sentence without advice; if it is empty, the whole sentence
    Failure(ExitCode code, const QString &sentence, int httpStatus = 0, const QString &cause = {})
        : m_code(code), m_sentence(sentence), m_cause(cause.isEmpty() ? sentence : cause),
          m_httpStatus(httpStatus)
    {}

    ExitCode code() const { return m_code; }
    QString sentence() const { return m_sentence; }
    QString cause() const { return m_cause; }
    int httpStatus() const { return m_httpStatus; } //!< 0 if there was no response
    const char *what() const noexcept override { return "velldoc::Failure"; }

private:
    ExitCode m_code;
    QString m_sentence;
    QString m_cause;
    int m_httpStatus;
};

} // namespace velldoc
