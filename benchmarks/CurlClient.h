#pragma once

#include <QByteArray>
#include <QString>

//! \brief The plain alternative: one libcurl handle, one kept-alive connection, nothing around it.
//!
//! Blocks. A request that fails ends the program.
class CurlClient
{
public:
    enum class Version { Http11, Http2 };

    //! \param baseApi with a slash at the end
    //! \param authority a PEM file of a certificate authority to trust; empty for those of the system
    CurlClient(const QString &baseApi, const QString &authority, Version version = Version::Http11);
    ~CurlClient();
    Q_DISABLE_COPY(CurlClient)

    //! \param path encoded as it goes over the wire. \return the body of the response
    QByteArray get(const QByteArray &path);
    QByteArray post(const QByteArray &path, const QByteArray &contentType, const QByteArray &body);

private:
    QByteArray perform(const QByteArray &path);

    const QByteArray m_baseApi;
    void *m_handle;
    QByteArray m_response;
};
