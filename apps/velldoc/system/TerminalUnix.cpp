#include <velldoc/system/Terminal.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTextCodec>

#include <csignal>
#include <dirent.h>
#include <memory>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace velldoc {

void terminal::prepare()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

bool terminal::isTerminal(std::FILE *stream)
{
    return isatty(fileno(stream)) != 0;
}

int terminal::columnsOf(std::FILE *stream)
{
    winsize size = {};
    if (ioctl(fileno(stream), TIOCGWINSZ, &size) != 0)
        return 0;
    return size.ws_col;
}

bool terminal::hasSequences(std::FILE *stream)
{
    return isTerminal(stream) && qgetenv("TERM") != QByteArray("dumb");
}

bool terminal::write(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    const std::size_t size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stream) == size;
}

int terminal::readByte()
{
    unsigned char byte = 0;
    return read(STDIN_FILENO, &byte, 1) == 1 ? byte : -1;
}

namespace {

termios hiddenModes; // while an input is hidden

//! The shell has changed the modes of the terminal while the program was stopped.
extern "C" void onContinue(int)
{
    tcsetattr(STDIN_FILENO, TCSANOW, &hiddenModes);
}

void handleContinue(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(SIGCONT, &action, nullptr);
}

} // namespace

class terminal::HiddenInput::Private
{
public:
    termios before = {};
    bool isSet = tcgetattr(STDIN_FILENO, &before) == 0;
};

terminal::HiddenInput::HiddenInput() : d(std::make_unique<Private>())
{
    if (!d->isSet)
        return;
    termios quiet = d->before;
    quiet.c_lflag &= ~tcflag_t(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    hiddenModes = quiet;
    handleContinue(onContinue);
}

terminal::HiddenInput::~HiddenInput()
{
    if (!d->isSet)
        return;
    handleContinue(SIG_DFL);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &d->before);
}

bool system_files::makePrivate(const QString &path)
{
    return QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
}

bool system_files::openWithDesktop(const QString &path)
{
    return QProcess::startDetached(QStringLiteral("xdg-open"), {path});
}

bool system_files::isFileName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..")
        && !name.contains(QLatin1Char('/')) && !name.contains(QChar::Null);
}

QStringList system_files::entriesOf(const QString &path, QStringList *notText)
{
    QStringList names;
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(opendir(QFile::encodeName(path).constData()),
                                                      &closedir);
    while (const dirent *const entry = folder ? readdir(folder.get()) : nullptr) {
        const QByteArray bytes(entry->d_name);
        if (bytes == "." || bytes == "..")
            continue;
        const QString name = QFile::decodeName(bytes);
        (QFile::encodeName(name) == bytes ? names : *notText).append(name);
    }
    names.sort();
    return names;
}

QString system_files::uniqueKey(const QString &path)
{
    return path;
}

} // namespace velldoc
