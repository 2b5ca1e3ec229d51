#pragma once

#include <service/records/Document.h>

#include <QJsonValue>
#include <QString>
#include <QVariant>

#include <array>
#include <variant>
#include <vector>

namespace service {

//! \brief One field of a document: a column of the table, a member of Document, a key of the interface.
//!
//! Selection, insertion, update, JSON, conditions, sort keys and the keys that requests may have come from the table
//! of these. A new field is a member, a row and a migration.
struct DocumentField
{
    enum class Kind {
        Text,
        Id, //!< NULL where there is none
        Number,
        Time,
    };

    //! What may be done with the field.
    enum Use : unsigned {
        Sent = 1U << 0U, //!< in the JSON of every document
        SentForFiles = 1U << 1U, //!< the same, but not for folders
        Asked = 1U << 2U, //!< in conditions and sort keys
        Inserted = 1U << 3U, //!< written with a new document
        Updated = 1U << 4U, //!< written with a change
        Created = 1U << 5U, //!< a request for a new document may have it
        Changed = 1U << 6U, //!< a request for a change may have it
        Plain = 1U
            << 7U, //!< what a request says is stored as it is, up to the limit; others have rules of their own
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

    //! The column of the table called d.
    QString sqlName() const { return QStringLiteral("d.") + QLatin1String(column); }
    //! For a statement.
    QVariant value(const Document &document) const;
    //! From the column of a statement.
    void setValue(Document &document, const QVariant &value) const;
    QJsonValue json(const Document &document) const;
};

constexpr int MaxWordBytes = 255;
constexpr int MaxRemarkBytes = 10000;

using Fields = std::array<DocumentField, 21>;
const Fields &documentFields();

//! The field that conditions and sort keys call \a key; null for one that they do not know.
const DocumentField *findAskedField(const QString &key);

//! The keys that a request may have, those that are no columns included.
//! \param use Created or Changed
std::vector<const char *> requestKeys(DocumentField::Use use);

} // namespace service
