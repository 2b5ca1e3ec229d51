#include <desktop/window/MainWindow.h>

#include <desktop/actions/Actions.h>
#include <desktop/app/Workspace.h>
#include <desktop/changes/DocumentMime.h>
#include <desktop/lists/DocumentPane.h>
#include <desktop/places/PathBar.h>
#include <desktop/places/PlacesPanel.h>
#include <desktop/search/SearchBar.h>
#include <desktop/window/Commands.h>
#include <desktop/window/FirstSteps.h>
#include <desktop/window/Menus.h>
#include <desktop/window/MessageBar.h>
#include <desktop/window/Panels.h>
#include <desktop/window/Rights.h>
#include <desktop/window/TaskbarProgress.h>

#include <documents/VellDocumentStore.h>
#include <models/VellChangePoll.h>

#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

namespace desktop {

namespace {

constexpr char WindowKey[] = "window";
constexpr char DocksKey[] = "docks";
constexpr char SplitterKey[] = "splitter";
constexpr char HeaderKey[] = "columns";

constexpr int StatusMs = 8000;

} // namespace

MainWindow::MainWindow(Workspace *workspace, QWidget *parent)
    : QMainWindow(parent), m_workspace(workspace), m_pane(new DocumentPane(&workspace->documents)),
      m_actions(new Actions(this, m_pane)), m_commands(new Commands(workspace, m_pane, this)),
      m_path(new PathBar(&workspace->documents)), m_search(new SearchBar(&workspace->documents)),
      m_places(new PlacesPanel(&workspace->documents, &workspace->searches)),
      m_offline(new MessageBar(QStringLiteral("offlineBar"))),
      m_message(new MessageBar(QStringLiteral("messageBar"))),
      m_edits(new MessageBar(QStringLiteral("editBar"))),
      m_panels(new Panels(workspace, m_edits, this)), m_firstSteps(new FirstSteps(m_actions)),
      m_transferState(new QLabel), m_counts(new QLabel), m_who(new QLabel),
      m_poll(new VellChangePoll(&workspace->documents, this)),
      m_taskbar(TaskbarProgress::ofSystem(this))
{
    buildCenter();
    buildMenus();
    connectPane();
    connectChanges();
    connectSession();
    connectPanels();
    restoreLooks();
    connect(m_actions, &Actions::triggered, this, &MainWindow::run);
    m_poll->follow(m_pane->model());
    m_poll->follow(m_places->folders());
    m_poll->start();
    updateOffline(workspace->session.state());
    if (!workspace->session.projectId().isEmpty())
        navigate(Location::folder(QString()));
}

MainWindow::~MainWindow() = default;

void MainWindow::buildCenter()
{
    auto *const center = new QWidget;
    auto *const layout = new QVBoxLayout(center);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(m_offline);
    layout->addWidget(m_message);
    layout->addWidget(m_edits);
    layout->addWidget(m_firstSteps);
    layout->addWidget(m_search);
    layout->addWidget(m_pane, 1);
    auto *const splitter = new QSplitter;
    splitter->setObjectName(QLatin1String(SplitterKey));
    splitter->addWidget(m_places);
    splitter->addWidget(center);
    splitter->setStretchFactor(1, 1);
    splitter->setCollapsible(1, false);
    splitter->setSizes({220, 780});
    setCentralWidget(splitter);
    m_firstSteps->setVisible(!m_workspace->settings.isFirstStepsDone());
    connect(m_firstSteps, &FirstSteps::closed, this, [this] {
        m_firstSteps->hide();
        m_workspace->settings.setFirstStepsDone(true);
        m_pane->setListFocus();
    });
    connect(m_offline, &MessageBar::accepted, &m_workspace->session, &VellSession::refreshUser);
    for (QLabel *const label : {m_transferState, m_counts, m_who}) {
        label->setContentsMargins(6, 0, 6, 0);
        statusBar()->addPermanentWidget(label);
    }
}

void MainWindow::buildMenus()
{
    menus::addMenuBar(this, *m_actions, m_panels->informationAction(), m_panels->transfersAction());
    menus::addToolBars(this, *m_actions, m_path, m_search->line());
    connect(m_actions->at(ActionId::Quit), &QAction::triggered, this, &QWidget::close);
    connect(m_actions->at(ActionId::Connect), &QAction::triggered, this,
            &MainWindow::connectRequested);
    connect(m_actions->at(ActionId::Settings), &QAction::triggered, this,
            &MainWindow::settingsRequested);
}

void MainWindow::connectPane()
{
    connect(m_pane, &DocumentPane::openRequested, this, &MainWindow::open);
    connect(m_pane, &DocumentPane::selectionChanged, this, &MainWindow::updateActions);
    connect(m_pane, &DocumentPane::selectionChanged, this, &MainWindow::updateStatus);
    connect(m_pane, &DocumentPane::changed, this, &MainWindow::updateStatus);
    connect(m_pane, &DocumentPane::changed, this, &MainWindow::updateActions);
    connect(m_pane, &DocumentPane::contextMenuRequested, this, &MainWindow::showContextMenu);
    const DocumentListModel *const model = m_pane->model();
    connect(model, &DocumentListModel::renameRequested, &m_workspace->changes,
            &DocumentChanges::rename);
    connect(model, &DocumentListModel::moveRequested, m_commands, &Commands::move);
    connect(model, &DocumentListModel::uploadRequested, m_commands, &Commands::upload);
    m_pane->model()->setFetch([this](const QList<VellDocument> &documents) {
        return m_workspace->dragged.fetch(documents, this);
    });
    const FolderTreeModel *const folders = m_places->folders();
    connect(folders, &FolderTreeModel::renameRequested, &m_workspace->changes,
            &DocumentChanges::rename);
    connect(folders, &FolderTreeModel::moveRequested, m_commands, &Commands::move);
    connect(folders, &FolderTreeModel::uploadRequested, m_commands, &Commands::upload);
    connect(folders, &VellFolderModel::loadFailed, this,
            [this](const QString &, const VellError &error) {
                if (error.kind != VellError::Kind::Offline) // shown by the bar
                    say(tr("The folders could not be loaded.") + QLatin1Char(' ') + error.text);
            });
    const auto openPlace = [this](const Location &location) { navigate(location); };
    connect(m_places, &PlacesPanel::locationRequested, this, openPlace);
    connect(m_places, &PlacesPanel::contextMenuRequested, this, &MainWindow::showFolderMenu);
    connect(m_path, &PathBar::folderRequested, this,
            [this](const QString &id) { navigate(Location::folder(id)); });
    connect(m_path, &PathBar::documentRequested, this, [this](const VellDocument &document) {
        navigate(Location::folder(document.parentId), document._id);
    });
    connect(m_path, &PathBar::editingEnded, m_pane, &DocumentPane::setListFocus);
    connect(m_search, &SearchBar::searched, this,
            [this](const SearchTerms &terms) { navigate(Location::searched(terms)); });
    connect(m_search, &SearchBar::saveRequested, this, &MainWindow::saveSearch);
    connect(m_search, &SearchBar::left, this, [this] {
        navigate(m_beforeSearch);
        m_pane->setListFocus();
    });
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &MainWindow::updateActions);
}

void MainWindow::connectChanges()
{
    const DocumentChanges *const changes = &m_workspace->changes;
    connect(changes, &DocumentChanges::done, this,
            [this](const QString &text) { statusBar()->showMessage(text, StatusMs); });
    connect(changes, &DocumentChanges::failed, this, [this](const QString &text) { say(text); });
    connect(changes, &DocumentChanges::folderCreated, this, [this](const VellDocument &folder) {
        if (m_location == Location::folder(folder.parentId))
            m_pane->editName(folder._id);
    });
    connect(changes, &DocumentChanges::undoChanged, this, &MainWindow::updateActions);
    connect(changes, &DocumentChanges::recycleBinChanged, this, [this] {
        if (m_location.kind == Location::Kind::RecycleBin)
            m_pane->reload();
    });
    connect(m_workspace, &Workspace::transfersNotKept, this, [this](const VellError &error) {
        say(tr("Transfers will be lost when the program ends.") + QLatin1Char(' ') + error.text);
    });
}

void MainWindow::connectSession()
{
    const VellSession *const session = &m_workspace->session;
    connect(session, &VellSession::stateChanged, this, &MainWindow::updateOffline);
    connect(session, &VellSession::projectChanged, this, [this](const QString &id) {
        m_history.clear();
        m_search->reset();
        m_message->hide();
        if (!id.isEmpty())
            navigate(Location::folder(QString()));
        updateActions();
    });
    connect(&m_workspace->connector, &Connector::opened, this, [this] {
        showLocation(m_location, QString()); // with the name of the project
    });
}

void MainWindow::connectPanels()
{
    connect(m_panels, &Panels::done, this,
            [this](const QString &text) { statusBar()->showMessage(text, StatusMs); });
    connect(m_panels, &Panels::failed, this, &MainWindow::say);
    connect(m_commands, &Commands::transfersStarted, m_panels, &Panels::showTransfers);
    connect(m_panels, &Panels::transfersChanged, this, &MainWindow::updateStatus);
    connect(m_pane, &DocumentPane::selectionChanged, this,
            [this] { m_panels->showDocuments(m_pane->selection()); });
}

void MainWindow::restoreLooks()
{
    AppSettings &settings = m_workspace->settings;
    resize(1100, 720);
    restoreGeometry(settings.state(QLatin1String(WindowKey)));
    restoreState(settings.state(QLatin1String(DocksKey)));
    m_pane->restoreHeaderState(settings.state(QLatin1String(HeaderKey)));
    static_cast<QSplitter *>(centralWidget())
        ->restoreState(settings.state(QLatin1String(SplitterKey)));
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    AppSettings &settings = m_workspace->settings;
    settings.setState(QLatin1String(WindowKey), saveGeometry());
    settings.setState(QLatin1String(DocksKey), saveState());
    settings.setState(QLatin1String(HeaderKey), m_pane->headerState());
    settings.setState(QLatin1String(SplitterKey),
                      static_cast<QSplitter *>(centralWidget())->saveState());
    QMainWindow::closeEvent(event);
}

void MainWindow::say(const QString &text)
{
    m_message->say(MessageBar::Kind::Warning, text);
}

QString MainWindow::rootTitle() const
{
    const SavedConnection &connection = m_workspace->connector.connection();
    if (connection.isOwn)
        return connection.title();
    return connection.projectName.isEmpty() ? connection.projectId : connection.projectName;
}

void MainWindow::navigate(const Location &location, const QString &selectedId)
{
    if (location.kind == Location::Kind::Search && m_location.kind != Location::Kind::Search)
        m_beforeSearch = m_location;
    m_history.visit(location);
    showLocation(location, selectedId);
}

void MainWindow::showLocation(const Location &location, const QString &selectedId)
{
    m_location = location;
    const bool isFolder = location.kind == Location::Kind::Folder;
    const bool isSearch = location.kind == Location::Kind::Search;
    m_commands->setLocation(location);
    m_pane->setLocation(location, selectedId);
    m_places->showLocation(location);
    if (isFolder)
        m_path->showFolder(location.folderId, rootTitle());
    else
        m_path->showTitle(location.title());
    if (isSearch)
        m_search->showTerms(location.search);
    else
        m_search->reset();
    if (isFolder)
        m_search->setFolder(location.folderId);
    m_search->setVisible(isSearch);
    for (const ActionId id : {ActionId::Restore, ActionId::EmptyRecycleBin})
        m_actions->at(id)->setVisible(location.kind == Location::Kind::RecycleBin);
    askForUploadRight();
    updateActions();
}

void MainWindow::askForUploadRight()
{
    delete m_rightQuestion;
    m_mayUpload = true; // the service decides
    if (m_location.kind != Location::Kind::Folder || m_workspace->session.projectId().isEmpty())
        return;
    m_rightQuestion = m_workspace->documents.may(VellRight::Upload, m_location.folderId, QString())
                          ->then(this, [this](bool may) {
                              m_mayUpload = may;
                              updateActions();
                          });
}

void MainWindow::updateActions()
{
    const VellSession &session = m_workspace->session;
    const QMimeData *const clipboard = QGuiApplication::clipboard()->mimeData();
    ActionState state;
    state.location = m_location;
    state.selection = m_pane->selection();
    state.isSelectionFetched = m_pane->isSelectionFetched();
    state.isConnected = !session.projectId().isEmpty();
    state.isOnline = session.state() == VellSession::State::Online;
    state.mayUpload = m_mayUpload && !m_pane->isFolderGone();
    state.mayPurge = rights::mayPurge(session);
    state.mayShare = rights::mayShare(session);
    state.canPaste = !document_mime::ids(clipboard, session.projectId()).isEmpty()
        || !document_mime::localPaths(clipboard).isEmpty();
    state.canUndo = m_workspace->changes.canUndo();
    state.canGoBack = m_history.canGoBack();
    state.canGoForward = m_history.canGoForward();
    m_actions->update(state);
    const QString undo = m_workspace->changes.undoText();
    m_actions->at(ActionId::Undo)
        ->setText(undo.isEmpty() ? tr("&Undo") : tr("&Undo: %1").arg(undo));
    m_actions->at(ActionId::Undo)->setIconText(tr("Undo"));
    m_actions->at(ActionId::DetailsView)->setChecked(m_pane->view() == DocumentPane::View::Details);
    m_actions->at(ActionId::IconsView)->setChecked(m_pane->view() == DocumentPane::View::Icons);
}

void MainWindow::updateStatus()
{
    const QList<VellDocument> selection = m_pane->selection();
    QString text = m_pane->model()->isLoading() && m_pane->model()->rowCount() == 0
        ? tr("Loading…")
        : tr("%n entries", nullptr, m_pane->model()->rowCount());
    if (!selection.isEmpty()) {
        qint64 bytes = 0;
        for (const VellDocument &document : selection)
            bytes += document.fileSize;
        text = tr("%n selected", nullptr, m_pane->selectedCount()) + QStringLiteral(" · ")
            + QLocale().formattedDataSize(bytes) + QStringLiteral(" · ") + text;
    }
    m_counts->setText(text);
    m_who->setText(m_workspace->session.user().name);
    const QString transfers = m_panels->transferSummary();
    m_transferState->setText(transfers);
    m_taskbar->show(transfers.isEmpty() ? -1 : m_panels->transferPercent());
    // For task bars that only show titles.
    setWindowTitle(transfers.isEmpty() ? tr("Documents")
                                       : tr("%1 % – Documents").arg(m_panels->transferPercent()));
}

void MainWindow::updateOffline(VellSession::State state)
{
    if (state == VellSession::State::Offline) {
        m_offline->say(MessageBar::Kind::Warning,
                       tr("The service cannot be reached. The lists may be out of date; transfers "
                          "continue when it can be reached again."),
                       tr("&Try Now"));
    } else {
        m_offline->hide();
    }
    updateActions();
}

void MainWindow::run(ActionId action)
{
    if (m_commands->run(action))
        return;
    switch (action) {
    case ActionId::Open:
        open(m_pane->selection().constFirst());
        return;
    case ActionId::Back:
        showLocation(m_history.goBack(), QString());
        return;
    case ActionId::Forward:
        showLocation(m_history.goForward(), QString());
        return;
    case ActionId::Up:
        goUp();
        return;
    case ActionId::Reload:
        m_pane->reload();
        m_places->folders()->reload();
        return;
    case ActionId::EditPath:
        m_path->edit();
        return;
    case ActionId::Search:
        m_search->line()->setFocus();
        m_search->line()->selectAll();
        m_search->show();
        return;
    case ActionId::DetailsView:
        m_pane->setView(DocumentPane::View::Details);
        updateActions();
        return;
    case ActionId::IconsView:
        m_pane->setView(DocumentPane::View::Icons);
        updateActions();
        return;
    case ActionId::Versions:
        m_panels->showVersions(m_pane->selection().constFirst());
        return;
    case ActionId::Share:
        m_panels->showShareDialog(m_pane->selection());
        return;
    case ActionId::Shares:
        m_panels->showShares();
        return;
    case ActionId::FirstSteps:
        m_firstSteps->show();
        return;
    default:
        return;
    }
}

void MainWindow::goUp()
{
    const auto folder = m_workspace->documents.store()->document(m_location.folderId);
    if (m_location.kind == Location::Kind::Folder && folder)
        navigate(Location::folder(folder->parentId), folder->_id);
    else if (m_location.kind == Location::Kind::RecycleBin && !m_location.folderId.isEmpty())
        navigate(Location::place(Location::Kind::RecycleBin));
    else
        navigate(Location::folder(QString()));
}

void MainWindow::open(const VellDocument &document)
{
    const QAction *const action = m_actions->at(ActionId::Open);
    const bool isBin = m_location.kind == Location::Kind::RecycleBin;
    if (rights::isFolder(document)) {
        navigate({isBin ? Location::Kind::RecycleBin : Location::Kind::Folder, document._id, {}});
        m_pane->setListFocus();
    } else if (action->isEnabled()) {
        m_workspace->edited.open(document);
        statusBar()->showMessage(tr("Opening “%1”…").arg(document.name), StatusMs);
    } else {
        say(action->toolTip());
    }
}

void MainWindow::saveSearch(const SearchTerms &terms)
{
    auto *const dialog = new QInputDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Save Search"));
    dialog->setLabelText(tr("Name of the search:"));
    dialog->setTextValue(terms.text);
    connect(dialog, &QInputDialog::textValueSelected, this, [this, terms](const QString &name) {
        if (!name.trimmed().isEmpty())
            m_workspace->searches.save({name.trimmed(), terms});
    });
    dialog->open();
}

void MainWindow::showContextMenu(const QPoint &globalPosition)
{
    QMenu menu(this);
    menus::fillContextMenu(&menu, *m_actions, m_location, !m_pane->selection().isEmpty());
    menu.exec(globalPosition);
}

void MainWindow::showFolderMenu(const QString &id, const QPoint &globalPosition)
{
    QMenu menu(this);
    menu.addAction(tr("&Open"), this, [this, id] { navigate(Location::folder(id)); });
    menu.addAction(tr("&New Folder"), this, [this, id] { m_workspace->changes.createFolder(id); });
    if (!id.isEmpty()) {
        const auto folder = m_workspace->documents.store()->document(id);
        QAction *const rename =
            menu.addAction(tr("&Rename"), this, [this, id] { m_places->editName(id); });
        rename->setEnabled(folder && rights::may(*folder, rights::edit()));
        QAction *const remove = menu.addAction(
            tr("De&lete"), this, [this, folder] { m_workspace->changes.remove({*folder}); });
        remove->setEnabled(folder && rights::may(*folder, rights::remove()));
    }
    menu.exec(globalPosition);
}

} // namespace desktop
