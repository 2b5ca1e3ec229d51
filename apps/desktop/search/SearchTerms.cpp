#include <desktop/search/SearchTerms.h>

#include <tuple>

namespace desktop {

namespace {

//! Returns the suffixes of a type, separated by "|"; empty if the type does not depend on the suffix.
QString suffixes(SearchTerms::Kind kind)
{
    switch (kind) {
    case SearchTerms::Kind::Pictures:
        return QStringLiteral("png|jpg|jpeg|bmp|gif|tif|tiff|webp|svg");
    case SearchTerms::Kind::Office:
        return QStringLiteral("doc|docx|dot|xls|xlsx|ppt|pptx|pdf|txt|odt|ods|odp|rtf|csv");
    case SearchTerms::Kind::Drawings:
        return QStringLiteral("dwg|dxf|dwt|dws|dwf");
    case SearchTerms::Kind::Media:
        return QStringLiteral("mp4|avi|wmv|rmvb|mov|mkv|mp3|wav|mid|flac|ogg");
    case SearchTerms::Kind::Archives:
        return QStringLiteral("zip|rar|7z|tar|gz|tgz|xz");
    default:
        return {};
    }
}

int days(SearchTerms::Period period)
{
    switch (period) {
    case SearchTerms::Period::Week:
        return 7;
    case SearchTerms::Period::Month:
        return 30;
    case SearchTerms::Period::Year:
        return 365;
    default:
        return 1;
    }
}

QString pattern(const QString &text)
{
    QString pattern;
    for (const QChar c : text) {
        if (c == QLatin1Char('*'))
            pattern += QStringLiteral(".*");
        else if (c == QLatin1Char('?'))
            pattern += QLatin1Char('.');
        else if (QStringLiteral("\\^$.|+()[]{}").contains(c))
            pattern += QLatin1Char('\\') + c;
        else
            pattern += c;
    }
    return pattern;
}

} // namespace

bool SearchTerms::isEmpty() const
{
    return text.trimmed().isEmpty() && kind == Kind::Any && period == Period::Any
        && userId.isEmpty();
}

VellDocumentConditon SearchTerms::condition(const QDate &today) const
{
    VellDocumentConditon condition;
    condition.hasParentId = !folderId.isEmpty();
    condition.isDeep = !folderId.isEmpty();
    condition.parentId = folderId;
    condition.searchName = pattern(text.trimmed());
    const QString ends = suffixes(kind);
    if (kind == Kind::Folders) {
        condition.type = QStringLiteral("dir");
    } else if (!ends.isEmpty()) {
        condition.type = QStringLiteral("file");
        condition.searchName += QStringLiteral(".*\\.(") + ends + QStringLiteral(")$");
    }
    if (period != Period::Any) {
        condition.isAllTime = false;
        condition.startTime = today.addDays(1 - days(period)).startOfDay();
        condition.endTime = today.startOfDay();
    }
    if (!userId.isEmpty()) {
        condition.isAllUser = false;
        condition.userIds = QStringList{userId};
    }
    return condition;
}

bool operator==(const SearchTerms &a, const SearchTerms &b)
{
    return std::tie(a.text, a.kind, a.period, a.userId, a.folderId)
        == std::tie(b.text, b.kind, b.period, b.userId, b.folderId);
}

} // namespace desktop
