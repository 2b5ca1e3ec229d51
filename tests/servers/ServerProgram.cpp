#include "ServerProgram.h"

#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>

#include <csignal>
#include <unistd.h>

namespace {

constexpr int StartMs = 20000;
constexpr int StepMs = 20;

bool isListening(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", port);
    return socket.waitForConnected(StepMs);
}

} // namespace

ServerProgram::ServerProgram()
{
    QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7777));
}

ServerProgram::~ServerProgram()
{
    kill();
}

QString ServerProgram::write(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    file.setPermissions(QFile::Permissions(0x6644));
    return file.fileName();
}

bool ServerProgram::start(const QString &program, const QStringList &arguments, quint16 port)
{
    // In a session of its own, so that kill() reaches all of its processes.
    QStringList command{program};
    if (::geteuid() == 0) {
        command =
            QStringList{"setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups"} + command;
    }
    m_process.setWorkingDirectory(m_folder.path());
    m_process.setStandardOutputFile(path("output"));
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start("setsid", command + arguments);
    if (!m_process.waitForStarted())
        return false;
    for (int waited = 0; waited < StartMs; waited += StepMs) {
        if (isListening(port))
            return true;
        if (m_process.waitForFinished(StepMs))
            break;
    }
    QFile output(path("output"));
    if (output.open(QIODevice::ReadOnly))
        qWarning("%s: %s", qPrintable(program), output.readAll().constData());
    return false;
}

void ServerProgram::kill()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    // setsid() and setpriv() become the program, which leads its group.
    ::kill(-pid_t(m_process.processId()), SIGKILL);
    m_process.waitForFinished();
}

quint16 ServerProgram::freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}
