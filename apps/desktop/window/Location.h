#pragma once

#include <desktop/search/SearchTerms.h>

#include <models/VellDocumentSource.h>

#include <QMetaType>
#include <QString>

namespace desktop {

//! \brief A place that the main window can show.
struct Location
{
    enum class Kind {
        Folder,
        Favorites,
        Frequent,
        Recent,
        RecycleBin,
        Search,
    };

    Kind kind = Kind::Folder;
    QString folderId; //!< Folder and RecycleBin; empty for the top level
    SearchTerms search; //!< Search

    static Location folder(const QString &id) { return {Kind::Folder, id, {}}; }
    static Location place(Kind kind) { return {kind, {}, {}}; }
    static Location searched(const SearchTerms &terms) { return {Kind::Search, {}, terms}; }

    VellDocumentSource source() const;

    //! Returns the name of a place; empty for folders.
    QString title() const;
};

bool operator==(const Location &a, const Location &b);
inline bool operator!=(const Location &a, const Location &b)
{
    return !(a == b);
}

} // namespace desktop

Q_DECLARE_METATYPE(desktop::Location)
