#pragma once

#include <vellclient_export.h>

#include <document_service/VellDocumentConditon.h>

#include <QString>

//! \brief The source of the documents of a VellDocumentModel.
//!
//! \since 0.1
//! \sa VellDocumentModel::setSource()
class VELLCLIENT_EXPORT VellDocumentSource
{
public:
    //! The kind of a source.
    enum class Kind {
        None,
        Folder,
        Search,
        Favorites,
        Frequent,
        Recent,
        RecycleBin,
    };

    //! Creates an empty source.
    VellDocumentSource() = default;

    //! \name Sources
    //! If \a category is not empty, the source has only documents of this category.
    //! \{

    //! Returns the entries of the folder \a id; empty for the top level.
    static VellDocumentSource folder(const QString &id, const QString &category = {});

    //! Returns the documents that match \a condition.
    static VellDocumentSource search(const VellDocumentConditon &condition);

    //! Returns the documents in all folders that the user has marked as favourites.
    static VellDocumentSource favorites(const QString &category = {});

    //! Returns the documents in all folders that the user has marked as frequently used.
    static VellDocumentSource frequent(const QString &category = {});

    //! Returns the newest 50 files of the user, newest first. VellDocumentModel::sort() has no effect on them.
    static VellDocumentSource recent(const QString &category = {});

    //! Returns the recycle bin, or the entries of the deleted folder \a folderId.
    static VellDocumentSource recycleBin(const QString &folderId = {});
    //! \}

    //! Returns the kind.
    Kind kind() const { return m_kind; }

    //! Returns the condition of the requests for this source.
    const VellDocumentConditon &condition() const { return m_condition; }

private:
    VellDocumentSource(Kind kind, const VellDocumentConditon &condition);

    Kind m_kind = Kind::None;
    VellDocumentConditon m_condition;
};
