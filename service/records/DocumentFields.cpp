#include <service/records/DocumentFields.h>

#include <service/records/Times.h>

#include <algorithm>

namespace service {

namespace {

using F = DocumentField;
using Kind = DocumentField::Kind;

constexpr unsigned Always = F::Sent | F::Asked;
constexpr unsigned OfFile = F::SentForFiles | F::Asked;

const Fields fieldTable{{
    {"_id", "id", Kind::Text, &Document::id, F::Asked | F::Inserted},
    {"projectId", "project_id", Kind::Text, &Document::projectId, F::Sent | F::Inserted},
    {"parentId", "parent_id", Kind::Id, &Document::parentId,
     Always | F::Stored | F::Created | F::Changed},
    {"type", "type", Kind::Text, &Document::type, Always | F::Inserted | F::Created | F::Changed},
    {"name", "name", Kind::Text, &Document::name, Always | F::Stored | F::Created | F::Changed},
    {"category", "category", Kind::Text, &Document::category, Always | F::Free, MaxWordBytes},
    {"hostId", "host_id", Kind::Text, &Document::hostId, Always | F::Free, MaxWordBytes},
    {"hostType", "host_type", Kind::Number, &Document::hostType, Always | F::Free},
    {"order", "ord", Kind::Number, &Document::order, Always | F::Stored | F::Changed | F::Plain},
    {"remark", "remark", Kind::Text, &Document::remark, Always | F::Free, MaxRemarkBytes},
    {"status", "status", Kind::Text, &Document::status, Always | F::Free, MaxWordBytes},
    {"pwd", "pwd", Kind::Text, &Document::pwd, F::Stored | F::Changed | F::Plain, MaxWordBytes},
    {"previewId", "preview_id", Kind::Text, &Document::previewId,
     F::Sent | F::Stored | F::Changed | F::Plain, MaxWordBytes},
    {"fileId", "file_id", Kind::Id, &Document::fileId, OfFile | F::Stored},
    {"fileSize", "size", Kind::Number, &Document::size, OfFile | F::Stored},
    {"suffix", "suffix", Kind::Text, &Document::suffix, OfFile | F::Stored},
    {"recycle", "recycle", Kind::Number, &Document::recycle, Always},
    {"createdAt", "created_at", Kind::Time, &Document::createdAt, Always | F::Inserted},
    {"createdBy", "created_by", Kind::Text, &Document::createdBy, Always | F::Inserted},
    {"updatedAt", "updated_at", Kind::Time, &Document::updatedAt, Always | F::Stored},
    {"updatedBy", "updated_by", Kind::Text, &Document::updatedBy, Always | F::Stored},
}};

} // namespace

QVariant DocumentField::value(const Document &document) const
{
    return std::visit(
        [this, &document](auto pointer) -> QVariant {
            const auto &stored = document.*pointer;
            if constexpr (std::is_same_v<std::decay_t<decltype(stored)>, QString>) {
                if (kind == Kind::Id && stored.isEmpty())
                    return {};
            }
            return stored;
        },
        member);
}

void DocumentField::setValue(Document &document, const QVariant &value) const
{
    std::visit(
        [&](auto pointer) {
            document.*pointer = value.value<std::decay_t<decltype(document.*pointer)>>();
        },
        member);
}

QJsonValue DocumentField::json(const Document &document) const
{
    const QVariant content = value(document);
    if (kind == Kind::Time) {
        const QString text = timeText(content.toLongLong());
        return text.isEmpty() ? QJsonValue() : QJsonValue(text);
    }
    return content.isValid() ? QJsonValue::fromVariant(content) : QJsonValue();
}

const Fields &documentFields()
{
    return fieldTable;
}

const DocumentField *findAskedField(const QString &key)
{
    QString name = key;
    if (name == QLatin1String("documentId"))
        name = QStringLiteral("_id");
    // Clients read the data of a file from the nested object, and may use it in conditions.
    const QLatin1String nested("file.");
    const bool isOfFile = name.startsWith(nested);
    if (isOfFile)
        name = name.mid(nested.size());
    const auto *const found =
        std::find_if(fieldTable.begin(), fieldTable.end(), [&](const DocumentField &field) {
            return field.may(isOfFile ? OfFile : unsigned(F::Asked))
                && name == QLatin1String(field.key);
        });
    return found == fieldTable.end() ? nullptr : found;
}

std::vector<const char *> requestKeys(DocumentField::Use use)
{
    std::vector<const char *> keys{"file", "links"};
    for (const DocumentField &field : fieldTable) {
        if (field.may(use))
            keys.push_back(field.key);
    }
    return keys;
}

} // namespace service
