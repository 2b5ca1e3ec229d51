#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

//! \brief The program `vell-service` with one data folder, which can be started and killed several times.
class ServiceProcess
{
public:
    explicit ServiceProcess(const QString &dataDir);
    ~ServiceProcess(); //!< kills

    //! Starts it and waits until it accepts requests: on a free port the first time, later on the same one.
    //! \param arguments further arguments, such as {"--quota", "1000"}
    bool start(const QStringList &arguments = {});

    //! Like `kill -9`; waits for its end.
    void kill();
    //! Like `kill`. \return the exit code, or -1 if it did not end
    int terminate();

    //! Waits until it ends by itself. \return the exit code, or -1 if it did not end
    int waitForEnd();

    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 processId() const { return m_process.processId(); }
    quint16 port() const { return m_port; }
    QString baseApi() const;
    QString dataDir() const { return m_dataDir; }

    //! Runs a command of the program. \a output is set to its output on both channels.
    //! \return the exit code, or -1 if it did not end
    static int run(const QStringList &arguments, QString *output);

private:
    const QString m_dataDir;
    quint16 m_port = 0;
    QProcess m_process;
};
