#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace service {

class Database;

//! A mark of a user on a document.
struct Mark
{
    QString documentId;
    int type = 0;
    qint64 createdAt = 0;
};

//! \brief The table of marks. Types are 1 (frequent), 2 (recent), 3 (favourite), and numbers that clients define.
class Marks
{
public:
    static constexpr int Frequent = 1;

    Marks(Database &database, const QString &userId);

    void set(const QString &documentId, int type, bool isMarked);

    //! Lists marks, newest first: of all documents if \a documentId is empty, of all types without a \a type. Marks on documents in the
    //! recycle bin are excluded.
    QList<Mark> list(const QString &documentId, std::optional<int> type);

private:
    Database &m_database;
    const QString m_userId;
};

} // namespace service
