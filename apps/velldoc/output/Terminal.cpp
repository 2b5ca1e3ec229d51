#include <velldoc/output/Terminal.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#endif

namespace velldoc {

namespace {

#ifdef Q_OS_WIN

int terminalColumns(std::FILE *stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    const HANDLE handle = GetStdHandle(stream == stderr ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
    if (!GetConsoleScreenBufferInfo(handle, &info))
        return 0;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

//! Turns the echo of the standard input off while it lives.
class Hidden
{
public:
    Hidden() : m_input(GetStdHandle(STD_INPUT_HANDLE)), m_isSet(GetConsoleMode(m_input, &m_mode))
    {
        if (m_isSet)
            SetConsoleMode(m_input, m_mode & ~DWORD(ENABLE_ECHO_INPUT));
    }
    ~Hidden()
    {
        if (m_isSet)
            SetConsoleMode(m_input, m_mode);
    }
    Q_DISABLE_COPY(Hidden)

private:
    HANDLE m_input;
    DWORD m_mode = 0;
    bool m_isSet;
};

#else

int terminalColumns(std::FILE *stream)
{
    winsize size = {};
    if (ioctl(fileno(stream), TIOCGWINSZ, &size) != 0)
        return 0;
    return size.ws_col;
}

//! Turns the echo of the standard input off while it lives.
class Hidden
{
public:
    Hidden() : m_isSet(tcgetattr(STDIN_FILENO, &m_before) == 0)
    {
        if (!m_isSet)
            return;
        termios quiet = m_before;
        quiet.c_lflag &= ~tcflag_t(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
    ~Hidden()
    {
        if (m_isSet)
            tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
    }
    Q_DISABLE_COPY(Hidden)

private:
    termios m_before = {};
    bool m_isSet;
};

#endif

//! One byte of the standard input, unbuffered, so that Ctrl-C ends the wait; -1 at the end.
int readByte()
{
    char byte = 0;
#ifdef Q_OS_WIN
    const auto count = _read(0, &byte, 1);
#else
    const auto count = read(STDIN_FILENO, &byte, 1);
#endif
    return count == 1 ? static_cast<unsigned char>(byte) : -1;
}

constexpr int UsualColumns = 80;

} // namespace

void terminal::prepare()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#ifdef Q_OS_WIN
    SetConsoleOutputCP(CP_UTF8);
    SetConsoleCP(CP_UTF8);
    DWORD mode = 0;
    for (const DWORD which : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        const HANDLE handle = GetStdHandle(which);
        if (GetConsoleMode(handle, &mode))
            SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
#endif
}

bool terminal::isTerminal(std::FILE *stream)
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

int terminal::width(std::FILE *stream)
{
    if (!isTerminal(stream))
        return 0;
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("COLUMNS", &isNumber);
    if (isNumber && wanted > 0)
        return wanted;
    const int columns = terminalColumns(stream);
    return columns > 0 ? columns : UsualColumns;
}

bool terminal::hasColour(std::FILE *stream)
{
    return isTerminal(stream) && qEnvironmentVariableIsEmpty("NO_COLOR")
        && qgetenv("TERM") != QByteArray("dumb");
}

bool terminal::readLine(QString *line)
{
    QByteArray bytes;
    for (;;) {
        const int byte = readByte();
        if (byte < 0)
            return false;
        if (byte == '\n')
            break;
        bytes.append(static_cast<char>(byte));
    }
    *line = QString::fromUtf8(bytes).trimmed();
    return true;
}

bool terminal::readHiddenLine(const QString &prompt, QString *line)
{
    // Before the prompt, so that not even the fastest fingers are seen.
    const Hidden hidden;
    std::fputs(prompt.toUtf8().constData(), stderr);
    std::fflush(stderr);
    const bool isRead = readLine(line);
    std::fputc('\n', stderr);
    return isRead;
}

bool system_files::makePrivate(const QString &path)
{
    return QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
}

qint64 system_files::readPosition(const QString &path)
{
    const QString wanted = QFileInfo(path).canonicalFilePath();
    qint64 position = -1;
    const QDir handles(QStringLiteral("/proc/self/fd"));
    const QStringList names = handles.entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        if (QFile::symLinkTarget(handles.filePath(name)) != wanted)
            continue;
        QFile info(QStringLiteral("/proc/self/fdinfo/") + name);
        if (!info.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = info.readLine(); // "pos:\t1234\n"
        position = qMax(position, line.mid(line.indexOf(':') + 1).trimmed().toLongLong());
    }
    return position;
}

} // namespace velldoc
