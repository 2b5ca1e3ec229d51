#include <desktop/window/Menus.h>

#include <desktop/actions/Actions.h>
#include <desktop/window/Location.h>

#include <QCoreApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include <vector>

namespace desktop {

namespace {

using Id = ActionId;
using Groups = std::vector<std::vector<Id>>;

class MenuText
{
    Q_DECLARE_TR_FUNCTIONS(desktop::Menus)

public:
    static QString file() { return tr("&File"); }
    static QString edit() { return tr("&Edit"); }
    static QString view() { return tr("&View"); }
    static QString go() { return tr("&Go"); }
    static QString help() { return tr("&Help"); }
    static QString navigation() { return tr("Navigation"); }
    static QString commands() { return tr("Commands"); }
};

void fill(QMenu *menu, const Actions &actions, const Groups &groups)
{
    menu->setToolTipsVisible(true); // with the reason if an action is not possible
    for (const std::vector<Id> &group : groups) {
        if (!menu->isEmpty())
            menu->addSeparator();
        for (const Id id : group)
            menu->addAction(actions.at(id));
    }
}

} // namespace

void menus::addMenuBar(QMainWindow *window, const Actions &actions, QAction *information,
                       QAction *transfers)
{
    const auto add = [&](const QString &title, const Groups &groups) {
        QMenu *const menu = window->menuBar()->addMenu(title);
        fill(menu, actions, groups);
        return menu;
    };
    add(MenuText::file(),
        {{Id::NewFolder, Id::UploadFiles, Id::UploadFolder, Id::Open, Id::Download},
         {Id::Versions, Id::Share, Id::Shares},
         {Id::Connect, Id::Settings},
         {Id::Quit}});
    add(MenuText::edit(),
        {{Id::Undo},
         {Id::Cut, Id::Paste, Id::SelectAll},
         {Id::Rename, Id::MarkFavorite, Id::MarkFrequent, Id::Delete},
         {Id::Restore, Id::EmptyRecycleBin}});
    QMenu *const view = add(MenuText::view(), {{Id::DetailsView, Id::IconsView}, {Id::Reload}});
    view->addSeparator();
    view->addAction(information);
    view->addAction(transfers);
    add(MenuText::go(), {{Id::Back, Id::Forward, Id::Up}, {Id::EditPath, Id::Search}});
    add(MenuText::help(), {{Id::FirstSteps}});
}

void menus::addToolBars(QMainWindow *window, const Actions &actions, QWidget *path, QWidget *search)
{
    QToolBar *const navigation = window->addToolBar(MenuText::navigation());
    navigation->setObjectName(QStringLiteral("navigationBar"));
    navigation->setMovable(false);
    for (const Id id : {Id::Back, Id::Forward, Id::Up, Id::Reload})
        navigation->addAction(actions.at(id));
    navigation->addWidget(path);
    navigation->addWidget(search);
    window->addToolBarBreak();
    QToolBar *const commands = window->addToolBar(MenuText::commands());
    commands->setObjectName(QStringLiteral("commandBar"));
    commands->setMovable(false);
    commands->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (const Id id : {Id::NewFolder, Id::UploadFiles, Id::Download, Id::Delete})
        commands->addAction(actions.at(id));
    commands->addSeparator();
    for (const Id id : {Id::Undo, Id::Restore, Id::EmptyRecycleBin})
        commands->addAction(actions.at(id));
    window->setContextMenuPolicy(Qt::NoContextMenu);
}

void menus::fillContextMenu(QMenu *menu, const Actions &actions, const Location &location,
                            bool hasSelection)
{
    if (location.kind == Location::Kind::RecycleBin) {
        fill(menu, actions, {{Id::Open, Id::Restore}, {Id::EmptyRecycleBin}});
    } else if (hasSelection) {
        fill(menu, actions,
             {{Id::Open, Id::Download},
              {Id::Cut, Id::Paste, Id::Rename, Id::Delete},
              {Id::MarkFavorite, Id::MarkFrequent},
              {Id::Versions, Id::Share}});
    } else {
        fill(menu, actions,
             {{Id::NewFolder, Id::UploadFiles, Id::UploadFolder, Id::Paste},
              {Id::SelectAll, Id::Reload}});
    }
}

} // namespace desktop
