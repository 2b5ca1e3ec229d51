#include "ServiceProcess.h"

#include "TestDatabase.h"

#include <QUrl>

namespace {

constexpr int WaitMs = 20'000;

int endOf(QProcess &process)
{
    const bool isEnded = process.state() == QProcess::NotRunning || process.waitForFinished(WaitMs);
    return isEnded && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

} // namespace

ServiceProcess::ServiceProcess(const QString &dataDir) : m_dataDir(dataDir)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

ServiceProcess::~ServiceProcess()
{
    kill();
}

bool ServiceProcess::start(const QStringList &arguments)
{
    const QStringList fixed{"--data", m_dataDir, "--listen", QString("127.0.0.1:%1").arg(m_port)};
    const QString database = TestDatabase::addressFor(m_dataDir);
    const QStringList records =
        database.isEmpty() ? QStringList() : QStringList{"--database", database};
    m_process.start(QStringLiteral(VELL_SERVICE_PROGRAM), fixed + records + arguments);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(WaitMs)) {
            qWarning("vell-service does not start: %s", qPrintable(m_process.errorString()));
            return false;
        }
    }
    const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
    m_port = static_cast<quint16>(QUrl(line.section(QLatin1Char(' '), -1)).port(0));
    return m_port != 0;
}

void ServiceProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(WaitMs);
}

int ServiceProcess::terminate()
{
    m_process.terminate();
    return endOf(m_process);
}

int ServiceProcess::waitForEnd()
{
    return endOf(m_process);
}

QString ServiceProcess::baseApi() const
{
    return QString("http://127.0.0.1:%1/").arg(m_port);
}

int ServiceProcess::run(const QStringList &arguments, QString *output)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(VELL_SERVICE_PROGRAM), arguments);
    const int code = endOf(process);
    *output = QString::fromUtf8(process.readAll());
    return code;
}
