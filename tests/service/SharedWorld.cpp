#include "SharedWorld.h"

#include <support/TestDatabase.h>

#include <thread>

SharedWorld::SharedWorld(const ServiceOptions &options) : first(options)
{
    isStarted = first.isStarted;
    m_addresses = QStringList(first.service->baseApi());
    ServiceOptions same = options;
    same.dataDir = first.dataDir();
    same.database = database();
    for (int i = 1; i < Services && isStarted; ++i) {
        m_others.push_back(std::make_unique<ReferenceService>(same));
        QString error;
        isStarted = m_others.back()->start(&error);
        if (!isStarted)
            qWarning("%s", qUtf8Printable(error));
        m_addresses.append(m_others.back()->baseApi());
    }
    for (const QString &address : qAsConst(m_addresses))
        m_clients.push_back(std::make_unique<HttpClient>(address));
}

ReferenceService &SharedWorld::service(int number)
{
    return number == 0 ? *first.service : *m_others.at(std::size_t(number) - 1);
}

void SharedWorld::onEachService(
    const std::function<void(HttpClient &client, int service)> &change) const
{
    std::vector<std::thread> threads;
    for (int i = 0; i < m_addresses.size(); ++i) {
        threads.emplace_back([this, i, &change] {
            HttpClient own(m_addresses.at(i));
            change(own, i);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
}

QString SharedWorld::database() const
{
    return TestDatabase::addressFor(first.dataDir());
}
