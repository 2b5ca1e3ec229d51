#pragma once

#include <desktop/app/FreeMemory.h>
#include <desktop/app/StartOptions.h>
#include <desktop/app/Workspace.h>
#include <desktop/settings/Language.h>

#include <QObject>
#include <QPointer>

#include <memory>

namespace desktop {

class MainWindow;
class SignInDialog;

//! \brief The running program: its window, its first connection, its language and colours.
class Desktop : public QObject
{
    Q_OBJECT

public:
    explicit Desktop(const StartOptions &options);
    ~Desktop() override;

    //! Shows the window and connects: by the options, otherwise as the last time, otherwise to the embedded service.
    void start();

    //! Shows the dialog for another service or project.
    void askForConnection();

    MainWindow *window() const { return m_window.get(); }
    Workspace *workspace() { return &m_workspace; }

private:
    void showWindow();
    void applySettings();
    SignInDialog *showSignIn();

    const StartOptions m_options;
    Workspace m_workspace;
    FreeMemory m_freeMemory;
    Language m_language;
    std::unique_ptr<MainWindow> m_window;
    QPointer<SignInDialog> m_signIn;
};

} // namespace desktop
