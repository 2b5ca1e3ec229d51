#pragma once

#include "Ledger.h"

#include <support/FaultyProxy.h>
#include <support/ServiceProcess.h>

#include <desktop/app/Desktop.h>
#include <desktop/window/MainWindow.h>

#include <QTemporaryDir>

#include <memory>

//! \brief A service in a process of its own, vell-desktop behind a proxy to it, and a folder with files to store.
class MonkeyWorld : public QObject
{
    Q_OBJECT

public:
    MonkeyWorld();
    ~MonkeyWorld() override;

    //! Starts the program; its window is new then.
    void startProgram();
    void endProgram();

    //! Null while the program does not run.
    desktop::MainWindow *window() const { return m_program ? m_program->window() : nullptr; }
    desktop::Workspace &workspace() const { return *m_program->workspace(); }

    //! The path of a new file with a content of its own; in a folder of its own, so that names repeat.
    QString newFile(const QString &name, int fillBytes);
    //! Gives the file \a path another content of its own.
    void change(const QString &path, int fillBytes);
    //! A new folder for downloads.
    QString newFolder();
    //! A folder that is there already.
    QString commonFolder() const;

    //! Leaves all files there in the end. \return the folder
    QString keepFiles();

    //! Starts the service, with an access log among the files. \param arguments more for its command line
    void startService(const QStringList &arguments);

    //! The files that the program has opened, as a program of the system would get them.
    const QStringList &openedFiles() const { return m_opened; }

    //! Of the user of the program.
    void setRole(const QString &role) const;
    QString otherToken() const { return m_otherToken; }

public Q_SLOTS:
    void openFile(const QUrl &url);

private:
    QString addUser(const QString &name, const QString &role) const;
    QString runCommand(const QStringList &words) const;

    QTemporaryDir m_folder;

public:
    Ledger ledger;
    ServiceProcess service;
    std::unique_ptr<FaultyProxy> proxy;

private:
    QString m_token;
    QString m_otherToken;
    QStringList m_opened;
    int m_fileCount = 0;
    std::unique_ptr<desktop::Desktop> m_program;
};
