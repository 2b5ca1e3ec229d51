#pragma once

#include "Transfer.h"

#include <curl/curl.h>

#include <memory>
#include <string_view>

class ConnectionAges;

//! \brief A handle of libcurl, which runs one transfer after the other. Belongs to the thread that drives the TransferLoop.
class CurlHandle
{
public:
    //! \a share and \a ages outlive the handle.
    CurlHandle(CURLSH *share, ConnectionAges &ages);
    ~CurlHandle();
    Q_DISABLE_COPY(CurlHandle)

    //! Prepares \a transfer. \param proxy empty for none
    void begin(const std::shared_ptr<Transfer> &transfer, const QByteArray &proxy);

    CURL *easy() const { return m_easy; }
    Transfer *transfer() const { return m_transfer.get(); }
    //! Returns the object that owns \a easy.
    static CurlHandle *of(CURL *easy);

    //! Returns true if a part of the body has not been sent yet.
    bool isSending() const;

    //! Prepares another attempt with a new connection if the existing one was not safe and nothing has been sent over it.
    //! \return true if another attempt is necessary
    bool canStartAgain(CURLcode code);

    //! Reports the end to the transfer, and releases it. \return the transfer
    std::shared_ptr<Transfer> finish(CURLcode code);

    //! Continues a paused transfer.
    void resume();

private:
    void setOptions();
    void setBody();
    void setTls();
    void setProxy(const QByteArray &proxy);
    void setHeaders();

    static size_t onHeader(char *data, size_t size, size_t count, void *self);
    static size_t onData(char *data, size_t size, size_t count, void *self);
    static size_t onBodyWanted(char *data, size_t size, size_t count, void *self);
    static int onProgress(void *self, curl_off_t dataTotal, curl_off_t data, curl_off_t bodyTotal,
                          curl_off_t body);
    static int onConnected(void *self, char *serverIp, char *localIp, int serverPort,
                           int localPort);
    static int onSocket(void *self, curl_socket_t socket, curlsocktype purpose);
    static int onResolve(void *resolver, void *reserved, void *self);

    void readHeaderLine(std::string_view line);
    int allowRequest(int localPort);

    //! The state of the transfer.
    struct State
    {
        ResponseHead head;
        bool isHeadComplete = false;
        curl_off_t sentBytes = 0;
        curl_off_t receivedBytes = 0;
        int localPort = 0;
        bool isSent = false; // the request may have reached the server
        bool isRepeatRefused = false;
        bool needsNewConnection = false;
        bool isOverProxy = false;
    };

    ConnectionAges &m_ages;
    CURL *m_easy;
    std::shared_ptr<Transfer> m_transfer;
    curl_slist *m_headers = nullptr;
    char m_detail[CURL_ERROR_SIZE] = {};
    State m_state;
};
