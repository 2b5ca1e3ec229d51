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

//! \brief The entries of a place as a table or as icons, or a notice if there are none.
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
    //! \param selectedId the entry that is selected when it has been loaded
    void setLocation(const Location &location, const QString &selectedId = {});
    void reload();

    void setView(View view);
    View view() const;

    DocumentListModel *model() const { return m_model; }

    //! Returns the selected documents, without those that have not been loaded.
    QList<VellDocument> selection() const;
    //! Returns the number of selected entries, loaded or not.
    int selectedCount() const;
    //! Returns true if selection() contains all selected entries.
    bool isSelectionFetched() const;
    //! Returns true if the shown folder has been deleted.
    bool isFolderGone() const { return m_isFolderGone; }
    void select(const QString &id);
    void selectAll();

    //! Starts renaming the document \a id in place, as soon as it is in the list.
    void editName(const QString &id);

    void setListFocus();

    //! Returns the widths, the order and the sorting of the columns.
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
    void showNotice();
    void onLoaded();
    void onSelectionChanged();
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
    mutable std::optional<QList<VellDocument>> m_selection; // the last result of selection()
    Location m_location;
    bool m_isFolderGone = false;
    View m_view = View::Details;
    QString m_wantedId; // to be selected when it has been loaded
    QString m_editedId; // to be renamed when it has been loaded
};

} // namespace desktop
