#pragma once

#include <QObject>

#include <chrono>
#include <memory>

namespace velldoc {

//! \brief Ctrl-C, SIGTERM and a closed terminal, turned into an orderly end.
//!
//! The first makes every waiting event loop of the main thread return, and each later one at once, so that the
//! program unwinds; whoever has waited asks isRequested(). A second one ends the process at once, as
//! the system would have.
//!
//! One object, made in main() after the application and living as long.
class Interrupt : public QObject
{
    Q_OBJECT

public:
    Interrupt();
    ~Interrupt() override;

    static bool isRequested();

    //! \throws Failure with ExitInterrupted when it has been requested.
    static void check();

    //! Lets the events run for a while. \throws Failure after Ctrl-C
    static void pause(std::chrono::milliseconds duration);

private:
    void unwind();

    class Source;
    std::unique_ptr<Source> m_source;
};

} // namespace velldoc
