#pragma once

#include <desktop/actions/ActionId.h>

#include <QObject>
#include <QStringList>

class QWidget;

namespace desktop {

class DocumentPane;
class Workspace;
struct Location;

//! \brief Executes the actions on documents, with their dialogs.
class Commands : public QObject
{
    Q_OBJECT

public:
    //! \param workspace, \a pane and \a window must outlive this object
    Commands(Workspace *workspace, DocumentPane *pane, QWidget *window);

    //! Sets the place for new entries.
    void setLocation(const Location &location);

    //! Executes \a action. \return false if it is not an action on documents
    bool run(ActionId action);

    void move(const QStringList &ids, const QString &folderId);
    void upload(const QStringList &paths, const QString &folderId);

Q_SIGNALS:
    //! The user has started transfers.
    void transfersStarted();

private:
    void chooseFiles();
    void chooseFolder();
    void download();
    void cut();
    void paste();
    void confirmEmptying();
    void toggleFavorite();

    Workspace *const m_workspace;
    DocumentPane *const m_pane;
    QWidget *const m_window;
    QString m_folderId;
    bool m_isFrequentPlace = false;
};

} // namespace desktop
