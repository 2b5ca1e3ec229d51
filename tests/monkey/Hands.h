#pragma once

#include "Dice.h"
#include "MonkeyWorld.h"

#include <QPointer>

class QDialog;
class QFileDialog;
class QMenu;

//! \brief The hands of a user at vell-desktop: random clicks, keys, menus, drags, dialogs and texts.
//!
//! Leaves alone what would leave the test: the dialog for another service, and the end of the program.
class Hands
{
public:
    explicit Hands(MonkeyWorld *world) : m_world(world) {}

    //! Does one thing. \return what
    QString act(Dice *dice);

    //! Closes what is in front of the window. \return false if nothing was
    static bool closeFront();

private:
    void watchWindow();
    QString useMenu(QMenu *menu, Dice *dice) const;
    QString useDialog(QWidget *dialog, Dice *dice) const;
    QString useFileDialog(QFileDialog *dialog, Dice *dice) const;
    static QString useWidget(QWidget *widget, Dice *dice);
    QString useWindow(Dice *dice);
    QString click(Dice *dice);
    QString openMenu(Dice *dice);
    static QString press(Dice *dice);
    QString triggerAction(Dice *dice) const;
    QString dropFiles(Dice *dice) const;
    QString dragSelection(Dice *dice) const;
    QString saveOpened(Dice *dice) const;
    QString openPlace(Dice *dice) const;

    MonkeyWorld *const m_world;
    QPointer<desktop::MainWindow> m_window; // whose signals the ledger follows
    QStringList m_cutIds; // which the next paste moves
    QString m_menuFolderId; // for which the menu of the tree was opened
};
