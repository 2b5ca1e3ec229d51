#include <desktop/actions/Actions.h>

#include <desktop/actions/ButtonText.h>

#include <QApplication>
#include <QKeySequence>
#include <QStyle>
#include <QWidget>

#include <vector>

namespace desktop {

namespace {

struct Row
{
    ActionId id;
    const char *name; // object name
    const char *text;
    const char *tip;
    QList<QKeySequence> keys;
    int icon; // QStyle::StandardPixmap; -1 for none
};

const std::vector<Row> &rows()
{
    using Id = ActionId;
    static const std::vector<Row> table{
        {Id::NewFolder,
         "newFolder",
         QT_TRANSLATE_NOOP("desktop::Actions", "&New Folder"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Creates a folder here"),
         {QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_N)},
         QStyle::SP_FileDialogNewFolder},
        {Id::UploadFiles,
         "uploadFiles",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Upload Files…"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Uploads files of this computer into this folder"),
         {QKeySequence(Qt::CTRL + Qt::Key_U)},
         QStyle::SP_ArrowUp},
        {Id::UploadFolder,
         "uploadFolder",
         QT_TRANSLATE_NOOP("desktop::Actions", "Upload F&older…"),
         QT_TRANSLATE_NOOP("desktop::Actions",
                           "Uploads a folder of this computer with all its contents"),
         {QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_U)},
         -1},
        {Id::Open,
         "open",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Open"),
         QT_TRANSLATE_NOOP("desktop::Actions",
                           "Opens the folder, or the file in its default program"),
         {QKeySequence(Qt::CTRL + Qt::Key_O)},
         -1},
        {Id::Download,
         "download",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Download…"),
         QT_TRANSLATE_NOOP("desktop::Actions",
                           "Downloads the selected entries into a local folder"),
         {QKeySequence(Qt::CTRL + Qt::Key_D)},
         QStyle::SP_ArrowDown},
        {Id::Rename,
         "rename",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Rename"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Renames the selected entry"),
         {QKeySequence(Qt::Key_F2)},
         -1},
        {Id::Cut,
         "cut",
         QT_TRANSLATE_NOOP("desktop::Actions", "Cu&t"),
         QT_TRANSLATE_NOOP("desktop::Actions",
                           "Cuts the selected entries, to move them with Paste"),
         {QKeySequence(Qt::CTRL + Qt::Key_X)},
         -1},
        {Id::Paste,
         "paste",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Paste"),
         QT_TRANSLATE_NOOP("desktop::Actions",
                           "Moves the cut entries here, or uploads the files on the clipboard"),
         {QKeySequence(Qt::CTRL + Qt::Key_V)},
         -1},
        {Id::Delete,
         "delete",
         QT_TRANSLATE_NOOP("desktop::Actions", "De&lete"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Moves the selected entries into the recycle bin"),
         {QKeySequence(Qt::Key_Delete)},
         QStyle::SP_TrashIcon},
        {Id::Restore,
         "restore",
         QT_TRANSLATE_NOOP("desktop::Actions", "Re&store"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Restores the selected entries to their folders"),
         {QKeySequence(Qt::CTRL + Qt::Key_R)},
         -1},
        {Id::EmptyRecycleBin,
         "emptyRecycleBin",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Empty Recycle Bin…"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Permanently deletes everything in the recycle bin"),
         {},
         -1},
        {Id::Undo,
         "undo",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Undo"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Undoes the last change"),
         {QKeySequence(Qt::CTRL + Qt::Key_Z)},
         -1},
        {Id::SelectAll,
         "selectAll",
         QT_TRANSLATE_NOOP("desktop::Actions", "Select &All"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Selects all entries"),
         {QKeySequence(Qt::CTRL + Qt::Key_A)},
         -1},
        {Id::MarkFavorite,
         "markFavorite",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Favourite"),
         QT_TRANSLATE_NOOP("desktop::Actions",
                           "Adds the document to the favourites, or removes it"),
         {QKeySequence(Qt::CTRL + Qt::Key_B)},
         -1},
        {Id::MarkFrequent,
         "markFrequent",
         QT_TRANSLATE_NOOP("desktop::Actions", "Fre&quently Used"),
         QT_TRANSLATE_NOOP("desktop::Actions",
                           "Adds the document to the frequently used documents, or removes it"),
         {},
         -1},
        {Id::Versions,
         "versions",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Versions…"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Shows the versions of the file"),
         {QKeySequence(Qt::CTRL + Qt::Key_H)},
         -1},
        {Id::Share,
         "share",
         QT_TRANSLATE_NOOP("desktop::Actions", "S&hare…"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Creates an address for people without an account"),
         {QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_S)},
         -1},
        {Id::Shares,
         "shares",
         QT_TRANSLATE_NOOP("desktop::Actions", "Shares of the Pro&ject…"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Lists and revokes shares"),
         {},
         -1},
        {Id::Back,
         "back",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Back"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Goes back to the previous place"),
         {QKeySequence(Qt::ALT + Qt::Key_Left), QKeySequence(Qt::Key_Back)},
         QStyle::SP_ArrowBack},
        {Id::Forward,
         "forward",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Forward"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Goes forward to the next place"),
         {QKeySequence(Qt::ALT + Qt::Key_Right), QKeySequence(Qt::Key_Forward)},
         QStyle::SP_ArrowForward},
        {Id::Up,
         "up",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Up"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Opens the folder above"),
         {QKeySequence(Qt::ALT + Qt::Key_Up), QKeySequence(Qt::Key_Backspace)},
         QStyle::SP_FileDialogToParent},
        {Id::Reload,
         "reload",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Reload"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Loads the list again"),
         {QKeySequence(Qt::Key_F5)},
         QStyle::SP_BrowserReload},
        {Id::EditPath,
         "editPath",
         QT_TRANSLATE_NOOP("desktop::Actions", "Enter &Path"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Opens a folder by its path"),
         {QKeySequence(Qt::CTRL + Qt::Key_L)},
         -1},
        {Id::Search,
         "search",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Search"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Searches for documents"),
         {QKeySequence(Qt::CTRL + Qt::Key_F)},
         -1},
        {Id::DetailsView,
         "detailsView",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Details"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Shows the entries as a table"),
         {QKeySequence(Qt::CTRL + Qt::Key_1)},
         QStyle::SP_FileDialogDetailedView},
        {Id::IconsView,
         "iconsView",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Icons"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Shows the entries as icons"),
         {QKeySequence(Qt::CTRL + Qt::Key_2)},
         QStyle::SP_FileDialogListView},
        {Id::Connect,
         "connect",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Connect…"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Opens another project or another service"),
         {QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_O)},
         -1},
        {Id::Settings,
         "settings",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Settings…"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Language, colours and behaviour"),
         {QKeySequence(Qt::CTRL + Qt::Key_Comma)},
         -1},
        {Id::FirstSteps,
         "firstSteps",
         QT_TRANSLATE_NOOP("desktop::Actions", "&First Steps"),
         QT_TRANSLATE_NOOP("desktop::Actions", "Shows the first three steps"),
         {QKeySequence(Qt::Key_F1)},
         -1},
        {Id::Quit,
         "quit",
         QT_TRANSLATE_NOOP("desktop::Actions", "&Quit"),
         QT_TRANSLATE_NOOP("desktop::Actions",
                           "Quits the program; transfers continue the next time"),
         {QKeySequence(Qt::CTRL + Qt::Key_Q)},
         -1},
    };
    return table;
}

//! Returns true if the keys of the action are for the selection, and so only work in the pane.
bool isForSelection(ActionId id)
{
    switch (id) {
    case ActionId::Open:
    case ActionId::Rename:
    case ActionId::Cut:
    case ActionId::Paste:
    case ActionId::Delete:
    case ActionId::Restore:
    case ActionId::SelectAll:
        return true;
    default:
        return false;
    }
}

} // namespace

Actions::Actions(QWidget *window, QWidget *pane) : QObject(window)
{
    for (const Row &row : rows()) {
        auto *const action =
            new QAction(QCoreApplication::translate("desktop::Actions", row.text), window);
        action->setIconText(buttonText(action->text()));
        action->setObjectName(QString::fromLatin1(row.name));
        action->setShortcuts(row.keys);
        action->setStatusTip(QCoreApplication::translate("desktop::Actions", row.tip));
        if (row.icon >= 0)
            action->setIcon(window->style()->standardIcon(QStyle::StandardPixmap(row.icon)));
        if (row.id == ActionId::DetailsView || row.id == ActionId::IconsView)
            action->setCheckable(true);
        connect(action, &QAction::triggered, this, [this, id = row.id] { Q_EMIT triggered(id); });
        const bool isOfPane = isForSelection(row.id);
        action->setShortcutContext(isOfPane ? Qt::WidgetWithChildrenShortcut : Qt::WindowShortcut);
        (isOfPane ? pane : window)->addAction(action);
        m_actions[std::size_t(row.id)] = action;
    }
    update({});
}

void Actions::update(const ActionState &state) const
{
    for (const Row &row : rows()) {
        QAction *const action = at(row.id);
        const QString refusal = action_rules::refusal(row.id, state);
        action->setEnabled(refusal.isEmpty());
        action->setToolTip(refusal.isEmpty() ? action->statusTip() : refusal);
    }
}

} // namespace desktop
