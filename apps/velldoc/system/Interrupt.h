#pragma once

#include <QObject>

#include <chrono>
#include <memory>

namespace velldoc {

//! \brief Ends the program in an orderly way after Ctrl-C, SIGTERM or a closed terminal.
//!
//! The first signal ends all event loops of the main thread, and later ones as soon as they start, so that the
//! functions return; after waiting they check isRequested(). A second signal ends the process at once, as
//! without this class.
//!
//! Create one object in main(), after the application.
class Interrupt : public QObject
{
    Q_OBJECT

public:
    Interrupt();
    ~Interrupt() override;

    static bool isRequested();

    //! \throws Failure with the exit code of the signal, if there was one
    static void check();

    //! Processes events for a while. \throws Failure after Ctrl-C
    static void pause(std::chrono::milliseconds duration);

private:
    void unwind();

    class Source;
    std::unique_ptr<Source> m_source;
};

} // namespace velldoc
