#pragma once

#include <service/ServiceWorld.h>

#include <functional>
#include <vector>

//! \brief Three services in this process on one PostgreSQL database and one folder of contents.
class SharedWorld
{
public:
    static constexpr int Services = 3;

    explicit SharedWorld(const ServiceOptions &options = {});

    HttpClient &client(int service) { return *m_clients.at(std::size_t(service)); }
    ReferenceService &service(int number);

    //! Calls \a change with a client of each service on a thread of its own, all at the same time.
    void onEachService(const std::function<void(HttpClient &client, int service)> &change) const;

    //! The address of the database.
    QString database() const;

    ServiceWorld first;
    bool isStarted = false;

private:
    std::vector<std::unique_ptr<ReferenceService>> m_others;
    std::vector<std::unique_ptr<HttpClient>> m_clients;
    QStringList m_addresses;
};
