#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace service {

class SqlDialect;

//! \brief SQL conditions for the table d, with their values in order.
struct SqlFilter
{
    QStringList conditions;
    QVariantList values;

    void add(const QString &condition, const QVariantList &conditionValues = {});
    QString text() const { return conditions.join(QStringLiteral(" AND ")); }
};

//! Adds the conditions of \a where. \throws ServiceError for an unknown field or operator, a value of the wrong type, or an invalid
//! regular expression
void addWhere(const QJsonObject &where, const SqlDialect &dialect, SqlFilter &filter);

//! Returns "ORDER BY …" for sort keys separated by spaces. Documents with equal keys are sorted by id, in the direction of the last key.
//! \throws ServiceError for an unknown key
QString orderClause(const QString &order);

} // namespace service
