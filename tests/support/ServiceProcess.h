#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

//! \brief The `vell-service` program on one data folder, started and killed as often as a test likes.
class ServiceProcess
{
public:
    explicit ServiceProcess(const QString &dataDir);
    ~ServiceProcess(); //!< kills

    //! Returns once it answers: on a free port the first time, on the same one from then on.
    //! \param arguments more for its command line, such as {"--quota", "1000"}
    bool start(const QStringList &arguments = {});

    //! As `kill -9`; returns once it is gone.
    void kill();
    //! As `kill`. \return the exit code, -1 when it did not end by itself
    int terminate();

    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 processId() const { return m_process.processId(); }
    quint16 port() const { return m_port; }
    QString baseApi() const;
    QString dataDir() const { return m_dataDir; }

    //! Runs a command of the program to its end. \a output gets what it said on both channels.
    //! \return the exit code, -1 when it did not end by itself
    static int run(const QStringList &arguments, QString *output);

private:
    const QString m_dataDir;
    quint16 m_port = 0;
    QProcess m_process;
};
