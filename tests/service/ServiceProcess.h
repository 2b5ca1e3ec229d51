#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

//! \brief The program vell-service, started with arguments; ended for good with the object.
class ServiceProcess
{
public:
    ~ServiceProcess();

    //! Starts it on a data folder and waits for its line; false when it ended without one.
    bool serve(const QString &dataDir, const QStringList &further = {});

    //! SIGKILL; returns when it is gone.
    void kill();
    //! SIGTERM; the exit code, or -1 when it did not end by itself.
    int terminate();

    QString baseApi() const { return m_baseApi; }
    bool isRunning() const { return m_process.state() == QProcess::Running; }

    //! Runs a command to its end. \a output gets both channels.
    static int run(const QStringList &arguments, QString *output);

private:
    QProcess m_process;
    QString m_baseApi;
};
