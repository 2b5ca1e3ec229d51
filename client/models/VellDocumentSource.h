#pragma once

#include <vellclient_export.h>

#include <document_service/VellDocumentConditon.h>

#include <QString>

//! \brief What a VellDocumentModel shows.
class VELLCLIENT_EXPORT VellDocumentSource
{
public:
    enum class Kind {
        None,
        Folder,
        Search,
        Favorites,
        Frequent,
        Recent,
        RecycleBin,
    };

    //! Nothing.
    VellDocumentSource() = default;

    //! The entries of the folder \a id; empty for the top level.
    //! \param category only entries of this category; empty for all, as for the others
    static VellDocumentSource folder(const QString &id, const QString &category = {});
    //! The documents that meet \a condition.
    static VellDocumentSource search(const VellDocumentConditon &condition);
    //! What the user has marked as a favourite, in all folders.
    static VellDocumentSource favorites(const QString &category = {});
    //! What the user has marked as frequently used, in all folders.
    static VellDocumentSource frequent(const QString &category = {});
    //! The user's newest 50 files, newest first; VellDocumentModel::sort() has no effect.
    static VellDocumentSource recent(const QString &category = {});
    //! What has been deleted, or what is in the deleted folder \a folderId.
    static VellDocumentSource recycleBin(const QString &folderId = {});

    Kind kind() const { return m_kind; }
    const VellDocumentConditon &condition() const { return m_condition; }

private:
    VellDocumentSource(Kind kind, const VellDocumentConditon &condition);

    Kind m_kind = Kind::None;
    VellDocumentConditon m_condition;
};
