#pragma once

#include <VellNetwork/vellnetwork_export.h>

#include <QMutex>
#include <QString>

//! \brief The address of the service, for all requests of this process.
//!
//! One object for the process. Set the address before the first request. A later change takes effect with the next request; requests
//! in flight are not affected.
//!
//! Thread-safe.
//!
//! \since 0.1
//! \sa NetworkSettings
class VELLNETWORK_EXPORT VellBaseApi
{
public:
    static VellBaseApi &GetInstance();

    //! Returns the base address, which ends with "/"; empty until it is set. On a thread that is inside a RequestScope: the address
    //! of its RequestContext.
    QString getBaseApi() const;

    //! Sets the base address, for example "http://127.0.0.1:8080/". A missing "/" at the end is appended, except to an empty text.
    //! The path must not be percent-encoded.
    void setBaseApi(const QString &baseApi);

private:
    VellBaseApi() = default;

    mutable QMutex m_mutex;
    QString m_baseApi;
};
