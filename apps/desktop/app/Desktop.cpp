#include <desktop/app/Desktop.h>

#include <desktop/settings/Appearance.h>
#include <desktop/settings/SettingsDialog.h>
#include <desktop/signin/SignInDialog.h>
#include <desktop/window/MainWindow.h>

namespace desktop {

Desktop::Desktop(const StartOptions &options)
    : m_options(options), m_workspace(options.paths), m_freeMemory(&m_workspace.queue)
{
    m_language.install(m_workspace.settings.language());
    appearance::apply(m_workspace.settings.colorScheme());
    connect(&m_workspace.connector, &Connector::opened, this,
            [this](const SavedConnection &connection) {
                // The dialog saves its connection itself, if the user wants this.
                if (!m_signIn && connection.isOwn)
                    m_workspace.connections.save(connection);
            });
    const auto ask = [this] {
        if (!m_signIn)
            showSignIn()->fill(m_workspace.connector.connection());
    };
    connect(&m_workspace.connector, &Connector::failed, this, [this, ask](const VellError &error) {
        ask();
        m_signIn->showError(error);
    });
    connect(&m_workspace.connector, &Connector::projectNeeded, this, [this, ask] {
        ask();
        m_signIn->showProjects();
    });
}

Desktop::~Desktop() = default;

void Desktop::start()
{
    showWindow();
    if (m_options.connection) {
        m_workspace.connector.open(*m_options.connection);
        return;
    }
    const std::optional<SavedConnection> last = m_workspace.connections.last();
    if (last && !(last->isOwn && m_options.isNoService)) {
        m_workspace.connections.withToken(*last, [this](const SavedConnection &connection) {
            m_workspace.connector.open(connection);
        });
    } else if (EmbeddedService::isAvailable() && !m_options.isNoService) {
        m_workspace.connector.openOwn();
    } else {
        askForConnection();
    }
}

void Desktop::showWindow()
{
    m_window = std::make_unique<MainWindow>(&m_workspace);
    connect(m_window.get(), &MainWindow::connectRequested, this, &Desktop::askForConnection);
    connect(m_window.get(), &MainWindow::settingsRequested, this, [this] {
        auto *const dialog = new SettingsDialog(&m_workspace.settings, m_window.get());
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        // The parent window of the dialog is replaced.
        connect(dialog, &QDialog::accepted, this, &Desktop::applySettings, Qt::QueuedConnection);
        dialog->open();
    });
    m_window->show();
}

void Desktop::applySettings()
{
    appearance::apply(m_workspace.settings.colorScheme());
    m_language.install(m_workspace.settings.language());
    // The texts of the window are set when it is created.
    const Location location = m_window->location();
    const QByteArray geometry = m_window->saveGeometry();
    const std::unique_ptr<MainWindow> former = std::move(m_window);
    showWindow();
    m_window->restoreGeometry(geometry);
    if (!m_workspace.session.projectId().isEmpty())
        m_window->navigate(location);
}

void Desktop::askForConnection()
{
    const SavedConnection current = m_workspace.connector.connection();
    showSignIn()->fill(current);
}

SignInDialog *Desktop::showSignIn()
{
    if (!m_signIn) {
        m_signIn =
            new SignInDialog(&m_workspace.connector, &m_workspace.connections, m_window.get());
        m_signIn->setAttribute(Qt::WA_DeleteOnClose);
        m_signIn->open();
    }
    return m_signIn;
}

} // namespace desktop
