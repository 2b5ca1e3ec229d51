#pragma once

#include <VellNetwork/vellnetwork_export.h>

#include <QMutex>
#include <QString>

//! \brief The address of the service that every request of this process goes to.
//!
//! One object for the process. Set the address before the first request; a later change takes
//! effect with the next request, those in flight are not touched.
//!
//! Thread-safe.
class VELLNETWORK_EXPORT VellBaseApi
{
public:
    static VellBaseApi &GetInstance();

    //! The base address as it was set, ending with "/"; empty until it is set. On a thread that is inside a
    //! RequestScope: the address of its RequestContext.
    QString getBaseApi() const;

    //! Sets the base address, for example "http://127.0.0.1:8080/". A missing "/" at the end is
    //! appended; an empty text stays empty. The text is taken as it is written for people:
    //! nothing in its path is percent-encoded.
    void setBaseApi(const QString &baseApi);

private:
    VellBaseApi() = default;

    mutable QMutex m_mutex;
    QString m_baseApi;
};
