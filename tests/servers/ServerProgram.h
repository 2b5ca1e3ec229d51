#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

//! \brief A server from the system's packages with a folder of its own, run as an ordinary user.
//!
//! Where the test is run by root, the program runs as nobody: such servers change their behaviour for root, or
//! refuse to start.
class ServerProgram
{
public:
    ServerProgram();
    ~ServerProgram(); //!< ends the program

    //! The folder for what the program reads and writes.
    QString path(const QString &name) const { return m_folder.filePath(name); }

    //! Writes a file there that the program may read.
    QString write(const QString &name, const QByteArray &content) const;

    //! Starts the program and waits until something listens on \a port. \return false when nothing does
    bool start(const QString &program, const QStringList &arguments, quint16 port);

    //! As `kill -9`, for all processes of the program.
    void kill();

    //! A port on which nothing listens now.
    static quint16 freePort();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
};
