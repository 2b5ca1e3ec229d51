#include <service/storage/StoredBytes.h>

#include <service/storage/ContentStore.h>
#include <service/storage/Statement.h>

namespace service {

qint64 storedBytes(Database &database)
{
    Statement row(database, QStringLiteral("SELECT used_bytes FROM store"));
    row.next();
    return row.number(0);
}

void requireRoom(Database &database, const ContentStore &store)
{
    if (store.hasQuota() && database.dialect().isShared())
        store.requireWithinQuota(storedBytes(database));
}

} // namespace service
