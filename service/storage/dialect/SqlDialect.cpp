#include <service/storage/dialect/SqlDialect.h>

#include <service/storage/dialect/PostgresDialect.h>
#include <service/storage/dialect/SqliteDialect.h>

namespace service {

std::unique_ptr<SqlDialect> SqlDialect::of(const QString &address, const DataFolder &folder,
                                           int busyTimeoutMs)
{
    if (address.isEmpty())
        return std::make_unique<SqliteDialect>(folder, busyTimeoutMs);
    return std::make_unique<PostgresDialect>(QUrl(address, QUrl::StrictMode), busyTimeoutMs);
}

} // namespace service
