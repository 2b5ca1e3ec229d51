#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace velldoc {

//! \brief The document service inside this process, for a machine with nothing set up.
//!
//! Built without the service, all functions say that there is none and how to name one.
class EmbeddedService
{
public:
    EmbeddedService();
    ~EmbeddedService();
    Q_DISABLE_COPY(EmbeddedService)

    //! Starts on the data folder \a dataDir on a free loopback port. When another velldoc is using the
    //! folder it waits some seconds, or uses that one's service when it is "velldoc serve".
    //! \return the base address
    //! \throws Failure
    QString start(const QString &dataDir);

    bool isRunning() const;

    //! Serves \a dataDir on \a address ("127.0.0.1:8080") until the program is told to end; \a announce gets
    //! the base address once requests are answered.
    //! \throws Failure
    void serve(const QString &dataDir, const QString &address,
               const std::function<void(const QString &)> &announce);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace velldoc
