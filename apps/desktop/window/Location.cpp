#include <desktop/window/Location.h>

#include <QCoreApplication>

#include <tuple>

namespace desktop {

namespace {

class LocationText
{
    Q_DECLARE_TR_FUNCTIONS(desktop::Location)

public:
    static QString of(Location::Kind kind)
    {
        switch (kind) {
        case Location::Kind::Folder:
            return {};
        case Location::Kind::Favorites:
            return tr("Favourites");
        case Location::Kind::Frequent:
            return tr("Frequently Used");
        case Location::Kind::Recent:
            return tr("Recent");
        case Location::Kind::RecycleBin:
            return tr("Recycle Bin");
        case Location::Kind::Search:
            return tr("Search Results");
        }
        return {};
    }
};

} // namespace

VellDocumentSource Location::source() const
{
    switch (kind) {
    case Kind::Folder:
        return VellDocumentSource::folder(folderId);
    case Kind::Favorites:
        return VellDocumentSource::favorites();
    case Kind::Frequent:
        return VellDocumentSource::frequent();
    case Kind::Recent:
        return VellDocumentSource::recent();
    case Kind::RecycleBin:
        return VellDocumentSource::recycleBin(folderId);
    case Kind::Search:
        return VellDocumentSource::search(search.condition(QDate::currentDate()));
    }
    return {};
}

QString Location::title() const
{
    return LocationText::of(kind);
}

bool operator==(const Location &a, const Location &b)
{
    return std::tie(a.kind, a.folderId, a.search) == std::tie(b.kind, b.folderId, b.search);
}

} // namespace desktop
