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

//! \brief The documents of a folder, a search or another source as a table that fetches what is looked at.
//!
//! \code
//! VellDocumentModel model(&documents);
//! model.setSource(VellDocumentSource::folder(folderId));
//! view->setModel(&model);
//! connect(&model, &VellDocumentModel::loadFailed, this, &Window::showError);
//! \endcode
//!
//! \par Paging
//! rowCount() is the service's count. Rows are fetched in pages around those that data() is called for; until then
//! VellModelRole::IsLoaded is false and everything else is empty. About 2000 rows are kept, near those that were looked at last, and
//! up to 10,000 between persistent indexes.
//!
//! \par Order
//! Folders first, then as sort() says; sorted by the service, names by their bytes, users by their identifiers. Without sort(): the service's own
//! order, by position and then latest change; in the recycle bin the latest change.
//!
//! \par Changes
//! What the store of the documents learns is shown at once. Where the order or the number of rows may have changed, the
//! service is asked again. Selections and other persistent indexes stay with their documents, also when the list is
//! sorted in another way, and become invalid when the document is gone from the list.
//! A row that has not been fetched has no document: its indexes keep the row number, and become invalid when the list is sorted in
//! another way.
//!
//! Belongs to the thread of the session, and needs a QGuiApplication for the icons.
class VELLCLIENT_EXPORT VellDocumentModel : public QAbstractTableModel
{
    Q_OBJECT

public:
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

    //! \param documents must outlive the model
    explicit VellDocumentModel(VellDocuments *documents, QObject *parent = nullptr);
    ~VellDocumentModel() override;

    //! Shows \a source, with the sorting as it was. Opening another project sets an empty source.
    void setSource(const VellDocumentSource &source);
    const VellDocumentSource &source() const { return m_source; }

    //! Asks the service again, and shows what was there until it has answered.
    void reload();

    bool isLoading() const { return m_isLoading; }

    //! Why the last request failed; no error after success. Nothing is fetched after a failure until reload(), which
    //! follows by itself when the session is online again.
    const VellError &error() const { return m_error; }

    //! The document of the row of \a index, if it has been fetched.
    std::optional<VellDocument> document(const QModelIndex &index) const;

    //! The index of the document \a id; invalid if it is not among the fetched rows.
    QModelIndex indexOf(const QString &id, int column = NameColumn) const;

    //! What VellModelRole::Transfer gives for the document \a id: the program's own value, kept whether or not the document is in a row. An invalid
    //! one forgets it.
    void setTransferState(const QString &id, const QVariant &state);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    //! Sorts by \a column; -1 for the service's own order.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

Q_SIGNALS:
    void loadingChanged(bool isLoading);

    //! A list has been fetched, after setSource(), reload(), sort() or a change; pages that follow are not reported.
    void loaded();

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
    bool m_isResorted = false; // the rows are in another order than the one that is asked for
    bool m_isLoading = false;
    int m_corrections = 0; // reloads in a row because pages did not fit together
    VellError m_error;
    QTimer m_refresh;
    QHash<QString, QVariant> m_transfers;
    mutable bool m_isLookPending = false;
    mutable int m_firstLooked = 0;
    mutable int m_lastLooked = 0;
};
