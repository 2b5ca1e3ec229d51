#pragma once

#include <document_model/VellDocument.h>

#include <QHash>
#include <QList>
#include <QString>

#include <memory>
#include <utility>
#include <vector>

//! \brief The rows of a list of which only parts have been fetched.
class DocumentRows
{
public:
    int count() const { return int(m_rows.size()); }
    int loadedCount() const { return m_rowOf.size(); }
    bool isComplete() const { return loadedCount() == count(); }

    //! The document in \a row; null if it has not been fetched.
    const VellDocument *at(int row) const { return m_rows[std::size_t(row)].get(); }
    //! -1 if the document \a id is not among the fetched ones.
    int rowOf(const QString &id) const { return m_rowOf.value(id, -1); }

    //! New rows at the end have not been fetched.
    void setCount(int count);

    //! Puts \a documents into the rows from \a first on. What was there, and what has the same identifier elsewhere,
    //! goes. \return false if one was elsewhere: the rows that are known do not fit together any more
    bool place(int first, const QList<VellDocument> &documents);

    //! Puts the document in \a row of \a other into \a target, without a copy.
    void share(int target, const DocumentRows &other, int row);

    void remove(int first, int count);

    //! Forgets the documents outside of \a first to \a last.
    void forgetOutside(int first, int last);

    //! Whether a row from \a first to \a last has not been fetched.
    bool hasGap(int first, int last) const;

private:
    void note(int from);

    std::vector<std::shared_ptr<const VellDocument>> m_rows;
    QHash<QString, int> m_rowOf;
};
