#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace service {

class SqlDialect;

//! \brief Conditions of SQL on the table d, with their values in order.
struct SqlFilter
{
    QStringList conditions;
    QVariantList values;

    void add(const QString &condition, const QVariantList &conditionValues = {});
    QString text() const { return conditions.join(QStringLiteral(" AND ")); }
};

//! Adds what \a where asks for. \throws ServiceError for an unknown field or operator, a value of
//! the wrong type, a regular expression that cannot be read
void addWhere(const QJsonObject &where, const SqlDialect &dialect, SqlFilter &filter);

//! "ORDER BY …" for sort keys parted by blanks; ties follow the id in the direction of the last key.
//! \throws ServiceError for an unknown key
QString orderClause(const QString &order);

} // namespace service
