#pragma once

#include <desktop/actions/ActionId.h>

class QAction;
class QMainWindow;
class QMenu;
class QWidget;

namespace desktop {

class Actions;
struct Location;

//! The menus and the tool bars with the actions.
namespace menus {

//! \param information and \a transfers show the panels
void addMenuBar(QMainWindow *window, const Actions &actions, QAction *information,
                QAction *transfers);

//! \param path and \a search are added to the first tool bar
void addToolBars(QMainWindow *window, const Actions &actions, QWidget *path, QWidget *search);

//! Returns the actions for the selection in \a location, or for the place itself.
void fillContextMenu(QMenu *menu, const Actions &actions, const Location &location,
                     bool hasSelection);

} // namespace menus

} // namespace desktop
