#pragma once

#include <embedded_service/EmbeddedService.h>

#include <QString>

#include <functional>

namespace velldoc {

//! \brief The service inside this process, with velldoc's words for what can go wrong.
class EmbeddedService
{
public:
    //! Starts on the data folder \a dataDir on a free loopback port. When another program works on the
    //! folder it waits some seconds, or uses the service that the other one has announced.
    //! \return the base address
    //! \throws Failure
    QString start(const QString &dataDir);

    bool isRunning() const { return m_service.isRunning(); }

    //! Serves \a dataDir on \a address ("127.0.0.1:8080") until the program is told to end; \a announce gets
    //! the base address once requests are answered.
    //! \throws Failure
    void serve(const QString &dataDir, const QString &address,
               const std::function<void(const QString &)> &announce);

private:
    ::EmbeddedService m_service;
};

} // namespace velldoc
