#pragma once

#include "FailureText.h"
#include "RequestBody.h"

#include "../engine/Transfer.h"

#include <VellNetwork/RequestContext.h>

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QNetworkReply>

#include <memory>

//! \brief The reply to a request, including redirects.
//!
//! Runs a Transfer, and reports on the thread that created it. Ends stalled requests, writes the trace, and reports failures by
//! NetworkManager::requestFailed().
class HttpReply : public QNetworkReply
{
    Q_OBJECT

public:
    HttpReply(QNetworkAccessManager::Operation operation, const QByteArray &method,
              const QNetworkRequest &request, RequestBody body, Caller caller, QObject *parent);
    ~HttpReply() override;

    //! For a caller that will wait in an event loop: see TransferEngine::drive(). Emits nothing.
    void drive();

    //! Like readAll(), without a copy.
    QByteArray takeAll();

    void abort() override;
    void close() override;
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override;
    void setReadBufferSize(qint64 bytes) override;

protected:
    bool event(QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    qint64 readData(char *data, qint64 maxSize) override;

private:
    void start();
    ConnectionOptions connectionOptions() const;
    void takeNews();
    void readHead(const ResponseHead &head);
    void reportProgress(qint64 sentBytes);
    void addData(const QByteArray &data);
    void feed(int blocks);
    void finishTransfer(const TransferEnd &end);
    void follow(const QUrl &target);
    void failLater(const RequestFailure &failure);
    void fail(const RequestFailure &failure);
    void finish(const RequestFailure &failure);
    void report(const RequestFailure &failure);
    qint64 room() const;

    const std::shared_ptr<RequestContext::Private> m_context; // null if the request has none
    std::shared_ptr<Transfer> m_transfer;
    RequestBody m_body;
    const Caller m_caller;
    QByteArray m_method; // of the present request; redirects may change it
    ResponseHead m_head;
    QUrl m_redirectTarget; // of the present response; empty if it is the last one
    int m_redirects = 0;
    QByteArray m_data;
    qint64 m_dataOffset = 0;
    qint64 m_receivedBytes = 0;
    qint64 m_totalBytes = -1;
    qint64 m_sentBytes = 0;
    bool m_isReadBeforeTheEnd = false;
    bool m_isDataLeft = false; // in the transfer, because the buffer is full
    QBasicTimer m_timer;
    QElapsedTimer m_age;
    quint64 m_activity = 0;
    int m_idleTicks = 0;
};
