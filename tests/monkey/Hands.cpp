#include "Hands.h"

#include <desktop/actions/Actions.h>
#include <desktop/lists/DocumentPane.h>
#include <desktop/lists/FolderTreeModel.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTest>
#include <QTreeView>

using namespace desktop;

namespace {

//! Lets the widget \a target take \a data at \a place, as when a mouse button is let go there.
void drop(QWidget *target, const QPoint &place, const QMimeData *data, Qt::DropAction action)
{
    QDragEnterEvent enter(place, action, data, Qt::LeftButton, {});
    QApplication::sendEvent(target, &enter);
    QDragMoveEvent move(place, action, data, Qt::LeftButton, {});
    QApplication::sendEvent(target, &move);
    if (!move.isAccepted()) {
        QDragLeaveEvent leave;
        QApplication::sendEvent(target, &leave);
        return;
    }
    QDropEvent event(place, action, data, Qt::LeftButton, {});
    QApplication::sendEvent(target, &event);
}

QPoint placeIn(const QWidget *widget, Dice *dice)
{
    return {dice->roll(widget->width()), dice->roll(widget->height())};
}

template <typename Kind>
QList<Kind *> usable(const QWidget *parent)
{
    QList<Kind *> found;
    const auto all = parent->findChildren<Kind *>();
    for (Kind *const widget : all) {
        if (widget->isVisible() && widget->isEnabled() && widget->window() == parent->window())
            found.append(widget);
    }
    return found;
}

QString nameOf(const QWidget *widget)
{
    return QString::fromLatin1(widget->metaObject()->className()) + QLatin1Char(' ')
        + widget->objectName();
}

QStringList selectedIds(const DocumentPane *pane)
{
    QStringList ids;
    const QList<VellDocument> selection = pane->selection();
    for (const VellDocument &document : selection)
        ids.append(document._id);
    return ids;
}

bool leavesTheTest(const QAction *action)
{
    return action->objectName() == QLatin1String("quit")
        || action->objectName() == QLatin1String("connect");
}

} // namespace

QString Hands::act(Dice *dice)
{
    watchWindow();
    if (auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget()))
        return useMenu(menu, dice);
    if (QWidget *const popup = QApplication::activePopupWidget()) {
        QTest::keyClick(popup, dice->chance(50) ? Qt::Key_Return : Qt::Key_Escape);
        return QStringLiteral("ends a popup");
    }
    if (auto *const files = qobject_cast<QFileDialog *>(QApplication::activeModalWidget()))
        return useFileDialog(files, dice);
    if (QWidget *const dialog = QApplication::activeModalWidget())
        return useDialog(dialog, dice);
    return useWindow(dice);
}

bool Hands::closeFront()
{
    QWidget *const front = QApplication::activePopupWidget() ? QApplication::activePopupWidget()
                                                             : QApplication::activeModalWidget();
    if (front)
        front->close();
    return front != nullptr;
}

//! A new window comes with another language, and with each start.
void Hands::watchWindow()
{
    MainWindow *const window = m_world->window();
    if (m_window == window)
        return;
    m_window = window;
    Ledger *const ledger = &m_world->ledger;
    const DocumentPane *const pane = window->pane();
    QObject::connect(window->actionTable(), &Actions::triggered, ledger, [=](ActionId id) {
        if (id == ActionId::Delete)
            ledger->noteDeleting(selectedIds(pane));
        else if (id == ActionId::Cut)
            m_cutIds = selectedIds(pane);
        else if (id == ActionId::Paste)
            ledger->noteMoving(m_cutIds, window->location().folderId);
    });
    QObject::connect(pane->model(), &DocumentListModel::moveRequested, ledger, &Ledger::noteMoving);
    QObject::connect(window->findChild<FolderTreeModel *>(), &FolderTreeModel::moveRequested,
                     ledger, &Ledger::noteMoving);
    QObject::connect(pane->model(), &DocumentListModel::renameRequested, ledger,
                     [ledger](const VellDocument &document, const QString &name) {
                         ledger->noteName(document._id, name);
                     });
}

QString Hands::useMenu(QMenu *menu, Dice *dice) const
{
    QList<QAction *> possible;
    const auto actions = menu->actions();
    for (QAction *const action : actions) {
        if (action->isEnabled() && !action->isSeparator() && !leavesTheTest(action))
            possible.append(action);
    }
    if (possible.isEmpty() || dice->chance(20)) {
        QTest::keyClick(menu, Qt::Key_Escape);
        return QStringLiteral("closes the menu");
    }
    QAction *const action = dice->pick(possible);
    const QString text = action->text();
    if (action->objectName().isEmpty()) // of the menu of the tree, which can delete
        m_world->ledger.noteDeleting({m_menuFolderId});
    menu->setActiveAction(action);
    QTest::keyClick(menu, Qt::Key_Return);
    return QStringLiteral("chooses ") + text;
}

QString Hands::useDialog(QWidget *dialog, Dice *dice) const
{
    const bool isSignIn = dialog->findChild<QLineEdit *>(QStringLiteral("address")) != nullptr;
    if (isSignIn || dice->chance(15)) {
        QTest::keyClick(dialog, Qt::Key_Escape);
        return QStringLiteral("leaves ") + nameOf(dialog);
    }
    const QList<QWidget *> widgets = usable<QWidget>(dialog);
    if (widgets.isEmpty())
        return QStringLiteral("sees an empty dialog");
    return nameOf(dialog) + QStringLiteral(": ") + useWidget(dice->pick(widgets), dice);
}

//! Chooses a path below the folder of the test only.
QString Hands::useFileDialog(QFileDialog *dialog, Dice *dice) const
{
    if (dice->chance(30)) {
        dialog->reject();
        return QStringLiteral("leaves the file dialog");
    }
    const bool isFolder = dialog->fileMode() == QFileDialog::Directory;
    QString path = isFolder ? m_world->newFolder() : m_world->newFile(dice->name(), dice->size());
    // A download meets what is there. What was fetched is not stored again: it may have got another name.
    if (dialog->objectName() == QLatin1String("downloadInto") && dice->chance(30))
        path = m_world->commonFolder();
    if (dialog->acceptMode() == QFileDialog::AcceptSave)
        path = m_world->newFolder() + QStringLiteral("/version");
    // As if it had been typed and accepted; the dialog asks nothing about such a path.
    dialog->setDirectory(QFileInfo(path).path());
    auto *const line = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    if (!line)
        return QStringLiteral("sees a file dialog of the system");
    line->setText(path);
    QMetaObject::invokeMethod(dialog, "accept");
    return QStringLiteral("chooses ") + path;
}

QString Hands::useWidget(QWidget *widget, Dice *dice)
{
    const QString name = nameOf(widget);
    const QPointer<QWidget> target(widget);
    if (auto *const line = qobject_cast<QLineEdit *>(widget)) {
        const QString text = dice->text();
        line->setText(text);
        if (target && dice->chance(50))
            QTest::keyClick(target, dice->chance(70) ? Qt::Key_Return : Qt::Key_Escape);
        return name + QStringLiteral(" gets ") + text;
    }
    if (auto *const edit = qobject_cast<QPlainTextEdit *>(widget)) {
        edit->setPlainText(dice->text());
        return name + QStringLiteral(" gets a text");
    }
    if (auto *const box = qobject_cast<QComboBox *>(widget)) {
        box->setCurrentIndex(dice->roll(box->count()));
        return name + QStringLiteral(" is set");
    }
    const QPoint place =
        qobject_cast<QAbstractButton *>(widget) ? widget->rect().center() : placeIn(widget, dice);
    QTest::mouseClick(widget, Qt::LeftButton, {}, place);
    return name + QStringLiteral(" is clicked");
}

QString Hands::useWindow(Dice *dice)
{
    switch (dice->roll(16)) {
    case 0:
    case 1:
    case 2:
    case 3:
        return click(dice);
    case 4:
    case 5:
    case 6:
        return press(dice);
    case 7:
    case 8:
    case 9:
        return triggerAction(dice);
    case 10:
        return openMenu(dice);
    case 11:
        return dropFiles(dice);
    case 12:
        return dragSelection(dice);
    case 13:
        return saveOpened(dice);
    case 14:
        return openPlace(dice);
    default: {
        const QList<QWidget *> widgets = usable<QWidget>(m_window);
        return useWidget(dice->pick(widgets), dice);
    }
    }
}

QString Hands::click(Dice *dice)
{
    const QList<QAbstractItemView *> views = usable<QAbstractItemView>(m_window);
    if (views.isEmpty())
        return QStringLiteral("sees no list");
    QAbstractItemView *const view = dice->pick(views);
    const QString name = view->objectName();
    QPoint place = placeIn(view->viewport(), dice);
    const int rows = view->model()->rowCount();
    if (rows > 0 && dice->chance(80))
        place = view->visualRect(view->model()->index(dice->roll(rows), 0)).center();
    static const QList<Qt::KeyboardModifiers> modifiers{
        Qt::NoModifier, Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier};
    if (dice->chance(25)) {
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, place);
        return QStringLiteral("double click in ") + name;
    }
    QTest::mouseClick(view->viewport(), Qt::LeftButton, dice->pick(modifiers), place);
    return QStringLiteral("click in ") + name;
}

QString Hands::openMenu(Dice *dice)
{
    const QList<QAbstractItemView *> views = usable<QAbstractItemView>(m_window);
    if (views.isEmpty())
        return QStringLiteral("sees no list");
    QAbstractItemView *const view = dice->pick(views);
    const QString name = view->objectName();
    const QPoint place = placeIn(view->viewport(), dice);
    m_menuFolderId = view->indexAt(place).data(VellModelRole::Id).toString();
    Q_EMIT view->customContextMenuRequested(place); // returns when the menu is closed
    return QStringLiteral("menu of ") + name;
}

QString Hands::press(Dice *dice)
{
    static const QList<QKeySequence> keys{
        Qt::Key_Return,
        Qt::Key_Up,
        Qt::Key_Down,
        Qt::Key_Home,
        Qt::Key_End,
        Qt::Key_Tab,
        Qt::Key_Escape,
        Qt::Key_Delete,
        Qt::Key_Backspace,
        Qt::Key_Space,
        Qt::Key_F2,
        Qt::Key_F5,
        Qt::CTRL + Qt::Key_A,
        Qt::CTRL + Qt::Key_B,
        Qt::CTRL + Qt::Key_D,
        Qt::CTRL + Qt::Key_F,
        Qt::CTRL + Qt::Key_H,
        Qt::CTRL + Qt::Key_J,
        Qt::CTRL + Qt::Key_L,
        Qt::CTRL + Qt::Key_R,
        Qt::CTRL + Qt::Key_U,
        Qt::CTRL + Qt::Key_V,
        Qt::CTRL + Qt::Key_X,
        Qt::CTRL + Qt::Key_Z,
        Qt::CTRL + Qt::Key_1,
        Qt::CTRL + Qt::Key_2,
        Qt::CTRL + Qt::SHIFT + Qt::Key_N,
        Qt::CTRL + Qt::SHIFT + Qt::Key_S,
        Qt::ALT + Qt::Key_Left,
        Qt::ALT + Qt::Key_Right,
        Qt::ALT + Qt::Key_Up,
        Qt::ALT + Qt::Key_Return,
    };
    QWidget *const focus = QApplication::focusWidget();
    if (!focus)
        return QStringLiteral("has no focus");
    const QKeySequence key = dice->pick(keys);
    if (qobject_cast<QLineEdit *>(focus) && dice->chance(50))
        return useWidget(focus, dice);
    QTest::keyClick(focus, Qt::Key(key[0] & ~int(Qt::KeyboardModifierMask)),
                    Qt::KeyboardModifiers(key[0] & int(Qt::KeyboardModifierMask)));
    return QStringLiteral("presses ") + key.toString();
}

QString Hands::triggerAction(Dice *dice) const
{
    QList<QAction *> possible;
    for (int id = 0; id < ActionCount; ++id) {
        QAction *const action = m_window->actionTable()->at(ActionId(id));
        if (action->isEnabled() && action->isVisible() && !leavesTheTest(action))
            possible.append(action);
    }
    QAction *const action = dice->pick(possible);
    const QString name = action->objectName();
    action->trigger();
    return QStringLiteral("action ") + name;
}

QString Hands::dropFiles(Dice *dice) const
{
    QList<QUrl> urls;
    for (int i = dice->roll(4); i >= 0; --i) {
        const QString path = m_world->newFile(dice->name(), dice->size());
        urls.append(QUrl::fromLocalFile(dice->chance(20) ? QFileInfo(path).path() : path));
    }
    QMimeData data;
    data.setUrls(urls);
    const QList<QAbstractItemView *> views = usable<QAbstractItemView>(m_window);
    if (views.isEmpty())
        return QStringLiteral("sees no list");
    QWidget *const target = dice->pick(views)->viewport();
    drop(target, placeIn(target, dice), &data, Qt::CopyAction);
    return QStringLiteral("drops %1 files").arg(urls.size());
}

QString Hands::dragSelection(Dice *dice) const
{
    const auto *const table = m_window->findChild<QTreeView *>(QStringLiteral("table"));
    const QModelIndexList rows = table->selectionModel()->selectedRows();
    const QList<QAbstractItemView *> views = usable<QAbstractItemView>(m_window);
    if (rows.isEmpty() || views.isEmpty())
        return QStringLiteral("has nothing to drag");
    const std::unique_ptr<QMimeData> data(table->model()->mimeData(rows));
    QWidget *const target = dice->pick(views)->viewport();
    drop(target, placeIn(target, dice), data.get(), Qt::MoveAction);
    return QStringLiteral("drags %1 entries").arg(rows.size());
}

QString Hands::saveOpened(Dice *dice) const
{
    if (m_world->openedFiles().isEmpty())
        return QStringLiteral("has opened no file");
    const QString path = dice->pick(m_world->openedFiles());
    if (!QFileInfo::exists(path))
        return QStringLiteral("has lost an opened file");
    m_world->change(path, dice->size());
    return QStringLiteral("saves ") + path;
}

QString Hands::openPlace(Dice *dice) const
{
    using Kind = Location::Kind;
    const Kind kind = dice->pick(
        QList<Kind>{Kind::Folder, Kind::Folder, Kind::Favorites, Kind::Recent, Kind::RecycleBin});
    m_window->navigate(Location::place(kind));
    return QStringLiteral("opens place %1").arg(int(kind));
}
