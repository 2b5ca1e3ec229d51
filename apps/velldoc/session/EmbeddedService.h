#pragma once

#include <embedded_service/EmbeddedService.h>

#include <QString>

#include <functional>

namespace velldoc {

//! \brief The service inside this process, with the error messages of velldoc.
class EmbeddedService
{
public:
    //! Starts the service for the data folder \a dataDir on a free loopback port. If another program uses the
    //! folder, waits a few seconds, or uses the service that the other program has announced.
    //! \return the base address
    //! \throws Failure
    QString start(const QString &dataDir);

    bool isRunning() const { return m_service.isRunning(); }

    //! Serves \a dataDir on \a address ("127.0.0.1:8080") until the program is interrupted. \a announce is called with
    //! the base address when the service is ready.
    //! \throws Failure
    void serve(const QString &dataDir, const QString &address,
               const std::function<void(const QString &)> &announce);

private:
    ::EmbeddedService m_service;
};

} // namespace velldoc
