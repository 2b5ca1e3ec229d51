#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace service {

class Database;

//! \brief Copies all records of one database into an empty one, for example of SQLite into PostgreSQL. The contents stay where they are.
class RecordsCopy
{
public:
    RecordsCopy(Database &source, Database &target);

    //! Copies every table in one transaction, and compares number and content of all rows before it is committed: after an interruption or a
    //! failure the target is as empty as before.
    //! \return a line for each table, "document: 1000 rows"
    //! \throws std::exception with a sentence, also if the target has documents, contents, users or projects
    QStringList run();

private:
    void requireEmptyTarget();
    qint64 copyTable(const QString &table, const QString &key);

    Database &m_source;
    Database &m_target;
};

} // namespace service
