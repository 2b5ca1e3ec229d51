#pragma once

#include <service/records/Document.h>

#include <QJsonValue>
#include <QString>
#include <QVariant>

#include <array>
#include <variant>
#include <vector>

namespace service {

//! \brief One field of a document: a column of the table, a member of Document, a key in JSON.
//!
//! SQL statements, JSON, conditions, sort keys and the keys that requests may contain are all derived from the table of fields. A new
//! field needs a member, a row and a migration.
struct DocumentField
{
    enum class Kind {
        Text,
        Id, //!< NULL if there is none
        Number,
        Time,
    };

    //! How a field is used.
    enum Use : unsigned {
        Sent = 1U << 0U, //!< in the JSON of every document
        SentForFiles = 1U << 1U, //!< the same, but not for folders
        Asked = 1U << 2U, //!< allowed in conditions and sort keys
        Inserted = 1U << 3U, //!< written with a new document
        Updated = 1U << 4U, //!< written with a change
        Created = 1U << 5U, //!< allowed in a request for a new document
        Changed = 1U << 6U, //!< allowed in a request for a change
        Plain =
            1U << 7U, //!< stored unchanged, up to the limit; other fields have rules of their own
        Stored = Inserted | Updated,
        Free = Stored | Created | Changed | Plain,
    };

    using Member = std::variant<QString Document::*, int Document::*, qint64 Document::*>;

    const char *key;
    const char *column;
    Kind kind;
    Member member;
    unsigned uses;
    int maxBytes = 0; //!< of a plain text

    bool may(unsigned use) const { return (uses & use) == use; }

    //! Returns the column of the table called d.
    QString sqlName() const { return QStringLiteral("d.") + QLatin1String(column); }
    //! Returns the value for a statement.
    QVariant value(const Document &document) const;
    //! Sets the member from a column of a statement.
    void setValue(Document &document, const QVariant &value) const;
    QJsonValue json(const Document &document) const;
};

constexpr int MaxWordBytes = 255;
constexpr int MaxRemarkBytes = 10000;

using Fields = std::array<DocumentField, 21>;
const Fields &documentFields();

//! Returns the field with that \a key in conditions and sort keys; null if there is none.
const DocumentField *findAskedField(const QString &key);

//! Returns the keys that a request may contain, including those without a column.
//! \param use Created or Changed
std::vector<const char *> requestKeys(DocumentField::Use use);

} // namespace service
