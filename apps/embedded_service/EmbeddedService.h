#pragma once

#include <QString>

#include <memory>

//! \brief The document service inside a program, for a machine with nothing set up.
//!
//! Several programs may use one data folder: the first serves it and leaves its address there with announce(), the others use that
//! service. Built without the service, every start ends with Outcome::Missing.
//!
//! Serves from threads of its own. All functions belong to one thread, and need a QCoreApplication.
class EmbeddedService
{
public:
    enum class Outcome {
        Started, //!< it serves at address()
        Shared, //!< another program serves the folder, at address()
        InUse, //!< another program works on the folder and serves nobody; it may end soon
        BadAddress, //!< the address to listen on cannot be read
        Failed, //!< for the reason of error()
        Missing, //!< this program was built without the service
    };

    EmbeddedService();
    ~EmbeddedService(); //!< stops
    Q_DISABLE_COPY(EmbeddedService)

    //! Returns whether the service was built into this program.
    static bool isAvailable();

    //! Tries once to serve the data folder \a dataDir, which is made if it is missing.
    //! \param listenAddress "127.0.0.1:8080"; empty for a free port of this machine
    Outcome start(const QString &dataDir, const QString &listenAddress = {});

    //! Leaves the address in the data folder, for other programs. Does nothing unless it serves.
    void announce();

    //! Ends the service and takes back its announcement.
    void stop();

    //! Returns whether the service runs inside this process.
    bool isRunning() const;

    //! The base address of Outcome::Started and Outcome::Shared.
    QString address() const { return m_address; }

    //! One sentence, after Outcome::Failed.
    QString error() const { return m_error; }

private:
    class Private;
    std::unique_ptr<Private> d;
    QString m_address;
    QString m_error;
};
