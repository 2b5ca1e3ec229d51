#include "ClientRun.h"

#include <QTest>

ClientRun::ClientRun(const QString &baseApi, const QString &filePath, const QStringList &arguments)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(VELL_UPLOAD_CLIENT),
                    QStringList{"--url", baseApi} + arguments + QStringList{filePath});
}

ClientRun::~ClientRun()
{
    m_process.kill();
    m_process.waitForFinished();
}

bool ClientRun::wait()
{
    return QTest::qWaitFor([this] { return !isRunning(); }, 60000);
}

bool ClientRun::isDone()
{
    return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0
        && outcome().startsWith(QLatin1String("document "));
}

QString ClientRun::documentId()
{
    return word(1);
}

QString ClientRun::fileId()
{
    return word(2);
}

QString ClientRun::log()
{
    QStringList kept;
    const QStringList all = lines();
    for (const QString &line : all) {
        if (!line.startsWith(QLatin1String("progress ")))
            kept.append(line);
    }
    return kept.join(QLatin1String("; "));
}

QString ClientRun::outcome()
{
    const QString line = lines().isEmpty() ? QString() : lines().constLast();
    return line.startsWith(QLatin1String("progress ")) ? QString() : line;
}

QString ClientRun::word(int number)
{
    return isDone() ? outcome().section(QLatin1Char(' '), number, number) : QString();
}

QStringList ClientRun::lines()
{
    while (m_process.canReadLine())
        m_lines.append(QString::fromUtf8(m_process.readLine()).trimmed());
    return m_lines;
}
