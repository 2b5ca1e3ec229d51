#pragma once

#include <desktop/app/StartOptions.h>
#include <desktop/app/Workspace.h>
#include <desktop/settings/Language.h>

#include <QObject>
#include <QPointer>

#include <memory>

namespace desktop {

class MainWindow;
class SignInDialog;

//! \brief The running program: its window, what it connects to at the start, its language and colours.
class Desktop : public QObject
{
    Q_OBJECT

public:
    explicit Desktop(const StartOptions &options);
    ~Desktop() override;

    //! Shows the window and connects: as the options say, else as the last time, else to the own service.
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
    Language m_language;
    std::unique_ptr<MainWindow> m_window;
    QPointer<SignInDialog> m_signIn;
};

} // namespace desktop
