#include <service/ServiceProcess.h>

namespace {

constexpr int WaitMs = 20000;
const QString program = QStringLiteral(VELL_SERVICE_PROGRAM);

} // namespace

ServiceProcess::~ServiceProcess()
{
    kill();
}

bool ServiceProcess::serve(const QString &dataDir, const QStringList &further)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(program, QStringList{QStringLiteral("--data"), dataDir} + further);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(WaitMs))
            return false;
    }
    const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
    const QString start = QStringLiteral("vell-service listens on ");
    if (!line.startsWith(start))
        return false;
    m_baseApi = line.mid(start.size());
    return true;
}

void ServiceProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(WaitMs);
}

int ServiceProcess::terminate()
{
    m_process.terminate();
    const bool isEnded = m_process.waitForFinished(WaitMs);
    return isEnded && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

int ServiceProcess::run(const QStringList &arguments, QString *output)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(WaitMs))
        return -1;
    *output = QString::fromUtf8(process.readAll());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}
