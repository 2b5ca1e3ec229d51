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

    quint16 port() const { return m_port; }
    QString baseApi() const;
    QString dataDir() const { return m_dataDir; }

private:
    const QString m_dataDir;
    quint16 m_port = 0;
    QProcess m_process;
};
