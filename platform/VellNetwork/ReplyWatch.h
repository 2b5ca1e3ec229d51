#pragma once

#include <QElapsedTimer>
#include <QNetworkReply>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QUrl>

class UploadBody;

//! \brief Stays with one reply, as its child, from sending to the end.
//!
//! Ends a reply on which nothing moves, decides about redirects, and once the reply has ended writes
//! the line of the trace and reports a failure through NetworkManager::requestFailed().
class ReplyWatch : public QObject
{
    Q_OBJECT

public:
    //! \a body is what the request sends; null when it sends nothing.
    ReplyWatch(QNetworkReply *reply, UploadBody *body);

    //! The watch of \a reply; null for a reply that Transport did not send.
    static ReplyWatch *of(const QNetworkReply *reply);

    //! Why the reply was ended from this side; NoError when it was not.
    QNetworkReply::NetworkError verdict() const { return m_verdict; }

private:
    void conclude();
    void moved();
    void tick();
    void judgeRedirect(const QUrl &target);
    QString refusal(const QUrl &target) const;
    bool isCutShort() const;
    bool isLostWhileSending() const;
    void condemn(QNetworkReply::NetworkError error, const QString &reason);
    void end(QNetworkReply::NetworkError error, const QString &reason);
    QString message() const;
    QString serviceMessage() const;
    void trace() const;

    QNetworkReply *m_reply;
    UploadBody *m_body; // a child of the reply too
    QNetworkAccessManager::Operation m_operation;
    QUrl m_url;
    QTimer m_timer;
    QElapsedTimer m_age;
    qint64 m_receivedBytes = 0;
    int m_idleTicks = 0;
    bool m_headArrived = false;
    QNetworkReply::NetworkError m_verdict = QNetworkReply::NoError;
    QString m_reason;
};

//! How the ended \a reply ended: NoError only with a 2xx status, QNetworkReply::TimeoutError when it
//! stalled, QNetworkReply::ProtocolFailure for a status that is neither a success nor, for Qt, an error.
QNetworkReply::NetworkError replyError(const QNetworkReply *reply);

//! The HTTP status of \a reply, 0 while there is none.
int replyStatus(const QNetworkReply *reply);
