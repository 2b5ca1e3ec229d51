#include <velldoc/system/Terminal.h>

#include <velldoc/system/WindowsFileName.h>

#include <QDir>
#include <QProcess>
#include <QTextCodec>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace velldoc {

namespace {

HANDLE handleOf(std::FILE *stream)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

} // namespace

void terminal::prepare()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    // Contents are written unchanged, and scripts read the same output on every system.
    for (std::FILE *const stream : {stdin, stdout, stderr})
        _setmode(_fileno(stream), _O_BINARY);
    SetConsoleCP(CP_UTF8);
    for (std::FILE *const stream : {stdout, stderr}) {
        DWORD mode = 0;
        if (GetConsoleMode(handleOf(stream), &mode))
            SetConsoleMode(handleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
}

bool terminal::isTerminal(std::FILE *stream)
{
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0; // unlike _isatty(), not for NUL
}

int terminal::columnsOf(std::FILE *stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (!GetConsoleScreenBufferInfo(handleOf(stream), &info))
        return 0;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

bool terminal::hasSequences(std::FILE *stream)
{
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0
        && (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

bool terminal::write(std::FILE *stream, const QString &text)
{
    // If a character were written as bytes in two parts, a console would show two wrong characters.
    if (isTerminal(stream)) {
        DWORD written = 0;
        return WriteConsoleW(handleOf(stream), text.utf16(), static_cast<DWORD>(text.size()),
                             &written, nullptr)
            != 0;
    }
    const QByteArray bytes = text.toUtf8();
    const std::size_t size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stream) == size;
}

int terminal::readByte()
{
    unsigned char byte = 0;
    return _read(_fileno(stdin), &byte, 1) == 1 ? byte : -1;
}

class terminal::HiddenInput::Private
{
public:
    HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD mode = 0;
    bool isSet = GetConsoleMode(input, &mode) != 0;
};

terminal::HiddenInput::HiddenInput() : d(std::make_unique<Private>())
{
    if (d->isSet)
        SetConsoleMode(d->input, d->mode & ~DWORD(ENABLE_ECHO_INPUT));
}

terminal::HiddenInput::~HiddenInput()
{
    if (d->isSet)
        SetConsoleMode(d->input, d->mode);
}

bool system_files::makePrivate(const QString &)
{
    return true; // on Windows only the user has access to the folder of the settings
}

bool system_files::openWithDesktop(const QString &path)
{
    return QProcess::startDetached(QStringLiteral("explorer.exe"),
                                   {QDir::toNativeSeparators(path)});
}

bool system_files::isFileName(const QString &name)
{
    return isWindowsFileName(name);
}

QStringList system_files::entriesOf(const QString &path, QStringList *)
{
    return QDir(path).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

QString system_files::uniqueKey(const QString &path)
{
    return path.toCaseFolded();
}

} // namespace velldoc
