#pragma once

#include <desktop/lists/DocumentListModel.h>
#include <desktop/window/Location.h>

#include <QWidget>

#include <optional>

class QAbstractItemView;
class QListView;
class QStackedWidget;
class QTreeView;

namespace desktop {

class MessageBar;
class NoticePage;

//! \brief The entries of a place, as a table or as icons, or why there are none.
class DocumentPane : public QWidget
{
    Q_OBJECT

public:
    enum class View {
        Details,
        Icons,
    };

    //! \param documents must outlive the pane
    explicit DocumentPane(VellDocuments *documents, QWidget *parent = nullptr);

    //! Shows \a location.
    //! \param selectedId the entry that is selected once it is there
    void setLocation(const Location &location, const QString &selectedId = {});
    void reload();

    void setView(View view);
    View view() const;

    DocumentListModel *model() const { return m_model; }

    //! The selected documents, without those that have not been fetched.
    QList<VellDocument> selection() const;
    //! How many entries are selected, fetched or not.
    int selectedCount() const;
    //! Returns whether selection() is all that is selected.
    bool isSelectionFetched() const;
    //! Returns whether the folder that is shown has been deleted.
    bool isFolderGone() const { return m_isFolderGone; }
    void select(const QString &id);
    void selectAll();

    //! Lets the user change the name of the document \a id in place. It is waited for if it is not in the list yet.
    void editName(const QString &id);

    void setListFocus();

    //! The widths, order and sorting of the columns.
    QByteArray headerState() const;
    void restoreHeaderState(const QByteArray &state);

Q_SIGNALS:
    void openRequested(const VellDocument &document);
    void selectionChanged();
    void contextMenuRequested(const QPoint &globalPosition);
    //! The number of entries or the state of loading has changed.
    void changed();

private:
    void buildTable();
    void buildIcons();
    void watchView(QAbstractItemView *view);
    void updatePage();
    void showPage(QWidget *page);
    void sayWhyEmpty();
    void takeLoaded();
    void takeSelection();
    void askForFolder();
    void setFolderGone(const QString &id, bool isGone);
    QAbstractItemView *currentView() const;

    VellDocuments *const m_documents;
    DocumentListModel *m_model;
    QTreeView *m_table;
    QListView *m_icons;
    NoticePage *m_notice;
    MessageBar *m_stale;
    QStackedWidget *m_pages;
    mutable std::optional<QList<VellDocument>> m_selection; // as selection() has found it last
    Location m_location;
    bool m_isFolderGone = false;
    View m_view = View::Details;
    QString m_wantedId; // to be selected once it is there
    QString m_editedId; // to be renamed once it is there
};

} // namespace desktop
