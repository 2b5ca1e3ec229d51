#pragma once

#include <QString>

#include <memory>

//! \brief The document service inside a program, for computers without a configured service.
//!
//! Several programs may use the same data folder: the first one serves it and publishes its address with announce(), the others
//! use that service. If the program was built without the service, start() always returns Outcome::Missing.
//!
//! The service runs on its own threads. All functions must be called on one thread, and need a QCoreApplication.
class EmbeddedService
{
public:
    enum class Outcome {
        Started, //!< the service runs at address()
        Shared, //!< another program serves the folder at address()
        InUse, //!< another program uses the folder without serving it; it may end soon
        BadAddress, //!< the address to listen on is not valid
        Failed, //!< error() has the reason
        Missing, //!< this program was built without the service
    };

    EmbeddedService();
    ~EmbeddedService(); //!< stops the service
    Q_DISABLE_COPY(EmbeddedService)

    //! Returns true if this program was built with the service.
    static bool isAvailable();

    //! Tries once to serve the data folder \a dataDir, which is created if it does not exist.
    //! \param listenAddress "127.0.0.1:8080"; empty for a free port of this computer
    Outcome start(const QString &dataDir, const QString &listenAddress = {});

    //! Writes the address into the data folder, for other programs. Has no effect if the service is not running.
    void announce();

    //! Stops the service and removes the published address.
    void stop();

    //! Returns true if the service runs inside this process.
    bool isRunning() const;

    //! Returns the base address after Outcome::Started and Outcome::Shared.
    QString address() const { return m_address; }

    //! Returns one sentence after Outcome::Failed.
    QString error() const { return m_error; }

private:
    class Private;
    std::unique_ptr<Private> d;
    QString m_address;
    QString m_error;
};
