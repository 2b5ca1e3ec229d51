#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace service {

class Database;

//! One user's mark on one document.
struct Mark
{
    QString documentId;
    int type = 0;
    qint64 createdAt = 0;
};

//! \brief The marks by which each user finds documents again. Types 1 (frequent), 2 (recent) and 3
//! (favourite) are known; others are the clients' own.
class Marks
{
public:
    static constexpr int Frequent = 1;

    Marks(Database &database, const QString &userId);

    void set(const QString &documentId, int type, bool isMarked);

    //! Newest first. Without a \a documentId those on all documents, without a \a type those of all
    //! types; marks on what is in the recycle bin are left out.
    QList<Mark> list(const QString &documentId, std::optional<int> type);

private:
    Database &m_database;
    const QString m_userId;
};

} // namespace service
