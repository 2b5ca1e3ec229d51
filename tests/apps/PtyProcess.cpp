#include "PtyProcess.h"

#include <QDeadlineTimer>
#include <QTest>

#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr int LongestWaitMs = 60'000;
constexpr int PollMs = 5;

} // namespace

PtyProcess::PtyProcess(int columns)
{
    winsize size = {};
    size.ws_col = static_cast<unsigned short>(columns);
    size.ws_row = 24;
    if (openpty(&m_master, &m_slave, nullptr, nullptr, &size) != 0)
        qFatal("There is no pseudo-terminal");
    fcntl(m_master, F_SETFL, O_NONBLOCK);
    fcntl(m_master, F_SETFD, FD_CLOEXEC);
}

PtyProcess::~PtyProcess()
{
    kill();
    waitForFinished();
    ::close(m_master);
    if (m_slave >= 0)
        ::close(m_slave);
}

void PtyProcess::setupChildProcess()
{
    setsid();
    ioctl(m_slave, TIOCSCTTY, 0);
    dup2(m_slave, STDIN_FILENO);
    dup2(m_slave, STDOUT_FILENO);
    dup2(m_slave, STDERR_FILENO);
    ::close(m_slave);
}

QByteArray PtyProcess::output()
{
    readMore();
    return m_output;
}

bool PtyProcess::waitForText(const QByteArray &text)
{
    const QDeadlineTimer deadline(LongestWaitMs);
    while (!output().contains(text)) {
        if (deadline.hasExpired() || (state() == NotRunning && !output().contains(text)))
            return false;
        QTest::qWait(PollMs);
    }
    return true;
}

void PtyProcess::press(const QByteArray &keys) const
{
    if (::write(m_master, keys.constData(), static_cast<std::size_t>(keys.size())) != keys.size())
        qFatal("The terminal takes no keys");
}

int PtyProcess::waitForEnd()
{
    const QDeadlineTimer deadline(LongestWaitMs);
    while (state() != NotRunning && !deadline.hasExpired()) {
        readMore(); // a full terminal would stop the process
        QTest::qWait(PollMs);
    }
    readMore();
    return state() == NotRunning && exitStatus() == NormalExit ? exitCode() : -1;
}

void PtyProcess::readMore()
{
    char buffer[4096];
    for (;;) {
        const auto count = ::read(m_master, buffer, sizeof buffer);
        if (count <= 0)
            return;
        m_output.append(buffer, static_cast<int>(count));
    }
}
