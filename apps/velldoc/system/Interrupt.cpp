#include <velldoc/system/Interrupt.h>

#include <velldoc/program/Failure.h>
#include <velldoc/program/Text.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>

#include <atomic>
#include <csignal>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace velldoc {

namespace {

std::atomic<bool> requested{false};
std::atomic<int> code{ExitInterrupted};

} // namespace

#ifdef Q_OS_WIN

namespace {

std::function<void()> consoleEvent;

BOOL WINAPI onConsoleEvent(DWORD)
{
    // Windows calls this on another thread.
    if (requested.exchange(true))
        return FALSE;
    QMetaObject::invokeMethod(QCoreApplication::instance(), consoleEvent, Qt::QueuedConnection);
    return TRUE;
}

} // namespace

class Interrupt::Source
{
public:
    explicit Source(Interrupt *interrupt)
    {
        consoleEvent = [interrupt] { interrupt->unwind(); };
        SetConsoleCtrlHandler(onConsoleEvent, TRUE);
    }
    ~Source() { SetConsoleCtrlHandler(onConsoleEvent, FALSE); }
    Q_DISABLE_COPY(Source)
};

#else

namespace {

constexpr int Signals[] = {SIGINT, SIGTERM, SIGHUP};
int wakePipe[2] = {-1, -1};

extern "C" void onSignal(int number)
{
    constexpr int BySignal = 128;
    code = BySignal + number;
    requested = true;
    const char byte = 0;
    // If the pipe is full, its reader is notified already.
    [[maybe_unused]] const auto written = write(wakePipe[1], &byte, 1);
}

} // namespace

class Interrupt::Source
{
public:
    explicit Source(Interrupt *interrupt)
    {
        if (pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK) != 0)
            return;
        m_notifier = std::make_unique<QSocketNotifier>(wakePipe[0], QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, interrupt,
                         [interrupt, this] {
                             m_notifier->setEnabled(false);
                             interrupt->unwind();
                         });
        // No SA_RESTART, so that the signal ends a question on the terminal; the second signal ends the process.
        struct sigaction action = {};
        action.sa_handler = onSignal;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        for (const int number : Signals)
            sigaction(number, &action, nullptr);
        std::signal(SIGPIPE, SIG_IGN);
    }
    Q_DISABLE_COPY(Source)
    ~Source() = default;

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

#endif

Interrupt::Interrupt() : m_source(std::make_unique<Source>(this)) {}

Interrupt::~Interrupt() = default;

bool Interrupt::isRequested()
{
    return requested;
}

void Interrupt::check()
{
    if (isRequested())
        throw Failure(ExitCode(code.load()), Text::tr("Interrupted."));
}

void Interrupt::pause(std::chrono::milliseconds duration)
{
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    loop.exec();
    check();
}

void Interrupt::unwind()
{
    QCoreApplication::exit(ExitInterrupted);
}

} // namespace velldoc
