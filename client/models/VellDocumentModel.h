#pragma once

#include <models/VellDocumentSource.h>
#include <models/VellModelRole.h>
#include <operations/VellError.h>
#include <vellclient_export.h>

#include <document_model/VellDocument.h>

#include <QAbstractTableModel>
#include <QHash>
#include <QPair>
#include <QPointer>
#include <QTimer>
#include <QVariant>
#include <QVector>

#include <functional>
#include <memory>
#include <optional>

class DocumentRows;
class FileTypeIcons;
class VellDocuments;
class VellOperation;
struct VellPage;

//! \brief The documents of a folder, a search or another source as a table, fetched in pages.
//!
//! \code
//! VellDocumentModel model(&documents);
//! model.setSource(VellDocumentSource::folder(folderId));
//! view->setModel(&model);
//! connect(&model, &VellDocumentModel::loadFailed, this, &Window::showError);
//! \endcode
//!
//! \par Pages
//! rowCount() is the number of documents on the service. When data() is called for a row, the rows around it are fetched. Until
//! then VellModelRole::IsLoaded is false and all other data is empty. About 2000 rows near those that were used last are kept,
//! and up to 10,000 between persistent indexes.
//!
//! \par Order
//! The service sorts: folders first, then by the column of sort(); names by their bytes, users by their identifiers. Without sort()
//! the order is that of the service: by position and then by the last change; in the recycle bin by the last change.
//!
//! \par Changes
//! Changes of the VellDocumentStore are shown at once. If the order or the number of rows may have changed, the rows are fetched
//! again. Selections and other persistent indexes stay with their documents, also if the list is sorted by another column; they
//! become invalid when the document is no longer in the list. A row that has not been fetched has no document: its indexes keep
//! the row number, and become invalid when the list is sorted by another column.
//!
//! \par Threads
//! Belongs to the thread of the session, and needs a QGuiApplication for the icons.
//!
//! \since 0.1
//! \sa VellDocumentSource, VellFolderModel, VellModelRole
class VELLCLIENT_EXPORT VellDocumentModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    //! The columns.
    enum Column {
        NameColumn,
        SizeColumn,
        TypeColumn,
        ChangedAtColumn,
        ChangedByColumn,
        RemarkColumn,
        ColumnCount,
    };
    Q_ENUM(Column)

    //! \param documents must not be null, and must outlive the model
    explicit VellDocumentModel(VellDocuments *documents, QObject *parent = nullptr);
    ~VellDocumentModel() override;

    //! Shows \a source, sorted as before. If another project is opened, the source becomes empty.
    void setSource(const VellDocumentSource &source);

    //! Returns the source.
    const VellDocumentSource &source() const { return m_source; }

    //! Fetches the list again. The present rows are shown until the response arrives.
    void reload();

    //! Returns true while a request is in flight.
    //! \sa loadingChanged()
    bool isLoading() const { return m_isLoading; }

    //! Returns the error of the last request; no error after success. After a failure nothing is fetched until reload(), which is
    //! called automatically when the session is online again.
    const VellError &error() const { return m_error; }

    //! Returns the document in the row of \a index, or no value if it has not been fetched.
    std::optional<VellDocument> document(const QModelIndex &index) const;

    //! Returns the fetched documents of the rows \a first to \a last, which must exist. Faster than document() for each of many rows.
    QList<VellDocument> documents(int first, int last) const;

    //! Returns the index of the document \a id; invalid if it is not in a fetched row.
    QModelIndex indexOf(const QString &id, int column = NameColumn) const;

    //! Sets the data for VellModelRole::Transfer of the document \a id, a value of the program. It is kept even if no row shows the
    //! document. An invalid \a state removes it.
    void setTransferState(const QString &id, const QVariant &state);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    //! Sorts by \a column; -1 for the order of the service.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

Q_SIGNALS:
    //! Emitted when isLoading() has changed.
    void loadingChanged(bool isLoading);

    //! Emitted when a list has been fetched after setSource(), reload(), sort() or a change, but not for further pages.
    void loaded();

    //! Emitted when a request has failed.
    //! \sa error()
    void loadFailed(const VellError &error);

private:
    struct Reload;

    VellDocumentSort order() const;
    void look(int row) const;
    void fetchLooked();
    void start(int first, int limit, const std::function<void(const VellPage &)> &onPage);
    void endRequest();
    void fail(const VellError &error);
    void setLoading(bool isLoading);
    void startReload();
    void placePage(const VellPage &page, int expectedRows);
    void findPersistentRows(Reload reload);
    void finishReload(const Reload &reload);
    void setRowCount(int count);
    void replaceRows(std::unique_ptr<DocumentRows> rows);
    QModelIndexList placesIn(const DocumentRows &rows, const QModelIndexList &places) const;
    QPair<int, int> persistentRows() const;
    void forgetDistantRows();
    void scheduleRefresh();
    bool belongs(const VellDocument &document) const;
    bool isNew(const VellDocument &document) const;
    void updateDocuments(const QList<VellDocument> &documents);
    void removeDocuments(const QStringList &ids);
    void takeOut(QVector<int> rows);

    VellDocuments *const m_documents;
    const std::unique_ptr<FileTypeIcons> m_icons;
    std::unique_ptr<DocumentRows> m_rows;
    VellDocumentSource m_source;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    QPointer<VellOperation> m_request;
    bool m_isReloading = false;
    bool m_isResorted = false; // the present rows are in another order than the requested ones
    bool m_isLoading = false;
    int m_corrections = 0; // consecutive reloads because of inconsistent pages
    VellError m_error;
    QTimer m_refresh;
    QHash<QString, QVariant> m_transfers;
    mutable bool m_isLookPending = false;
    mutable int m_firstLooked = 0;
    mutable int m_lastLooked = 0;
};
