#include "CurlClient.h"

#include <curl/curl.h>

namespace {

size_t append(char *data, size_t size, size_t count, void *response)
{
    static_cast<QByteArray *>(response)->append(data, int(size * count));
    return size * count;
}

} // namespace

CurlClient::CurlClient(const QString &baseApi, const QString &authority, Version version)
    : m_baseApi(baseApi.toUtf8()), m_handle(curl_easy_init())
{
    curl_easy_setopt(m_handle, CURLOPT_WRITEFUNCTION, &append);
    curl_easy_setopt(m_handle, CURLOPT_WRITEDATA, &m_response);
    curl_easy_setopt(m_handle, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(m_handle, CURLOPT_HTTP_VERSION,
                     version == Version::Http2 ? CURL_HTTP_VERSION_2TLS : CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(m_handle, CURLOPT_UPLOAD_BUFFERSIZE, 1048576L);
    if (!authority.isEmpty())
        curl_easy_setopt(m_handle, CURLOPT_CAINFO, authority.toUtf8().constData());
}

CurlClient::~CurlClient()
{
    curl_easy_cleanup(m_handle);
}

QByteArray CurlClient::get(const QByteArray &path)
{
    curl_easy_setopt(m_handle, CURLOPT_HTTPGET, 1L);
    return perform(path);
}

QByteArray CurlClient::post(const QByteArray &path, const QByteArray &contentType,
                            const QByteArray &body)
{
    curl_slist *headers = curl_slist_append(nullptr, ("Content-Type: " + contentType).constData());
    headers = curl_slist_append(headers, "Expect:");
    curl_easy_setopt(m_handle, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(m_handle, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(body.size()));
    curl_easy_setopt(m_handle, CURLOPT_POSTFIELDS, body.constData());
    const QByteArray response = perform(path);
    curl_easy_setopt(m_handle, CURLOPT_HTTPHEADER, nullptr);
    curl_slist_free_all(headers);
    return response;
}

QByteArray CurlClient::perform(const QByteArray &path)
{
    m_response = QByteArray();
    curl_easy_setopt(m_handle, CURLOPT_URL, (m_baseApi + path).constData());
    const CURLcode code = curl_easy_perform(m_handle);
    if (code != CURLE_OK)
        qFatal("%s: %s", path.constData(), curl_easy_strerror(code));
    return m_response;
}
