#pragma once

#include <document_model/VellDocument.h>

#include <QHash>
#include <QList>
#include <QString>

#include <memory>
#include <utility>
#include <vector>

//! \brief The rows of a list that is fetched in parts.
class DocumentRows
{
public:
    int count() const { return int(m_rows.size()); }
    int loadedCount() const { return m_rowOf.size(); }
    bool isComplete() const { return loadedCount() == count(); }

    //! Returns the document in \a row; null if it has not been fetched.
    const VellDocument *at(int row) const { return m_rows[std::size_t(row)].get(); }
    //! Returns the row of the document \a id; -1 if it is not in a fetched row.
    int rowOf(const QString &id) const { return m_rowOf.value(id, -1); }

    //! New rows at the end have not been fetched.
    void setCount(int count);

    //! Puts \a documents into the rows from \a first on, and removes other documents of these rows and the same documents in other
    //! rows. \return false if a document was in another row: then the rows are inconsistent
    bool place(int first, const QList<VellDocument> &documents);

    //! Puts the document in \a row of \a other into the row \a target, without a copy.
    void share(int target, const DocumentRows &other, int row);

    void remove(int first, int count);

    //! Removes the documents outside of the rows \a first to \a last.
    void forgetOutside(int first, int last);

    //! Returns true if a row from \a first to \a last has not been fetched.
    bool hasGap(int first, int last) const;

private:
    void note(int from);

    std::vector<std::shared_ptr<const VellDocument>> m_rows;
    QHash<QString, int> m_rowOf;
};
