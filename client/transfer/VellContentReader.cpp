#include <transfer/VellContentReader.h>

#include <session/SessionAccess.h>
#include <transfer/TransferText.h>

#include <VellNetwork/NetworkManager.h>

#include <QCryptographicHash>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

namespace {

using Kind = VellError::Kind;

constexpr qint64 BufferBytes = 1'048'576;
constexpr int MostFailuresInRow = 6;
constexpr int FirstDelayMs = 250;
constexpr int PartialContent = 206;
constexpr int Md5Digits = 32;

} // namespace

class VellContentReader::Private
{
public:
    Private(VellContentReader *reader, const ServiceScope &scope, const QString &fileId,
            qint64 sizeBytes);
    ~Private() { m_requests.abort(); }
    Q_DISABLE_COPY(Private)

private:
    void start();
    void take();
    VellError readHead();
    void endAttempt();
    void tryAgain(const VellError &error);
    void end(const VellError &error);
    VellError contentError() const;

    VellContentReader *const q;
    RequestContext m_requests;
    const QString m_url;
    const qint64 m_sizeBytes;
    QTimer m_delay;
    QPointer<QNetworkReply> m_reply;
    QCryptographicHash m_hash{QCryptographicHash::Md5};
    qint64 m_position = 0;
    QByteArray m_entityTag;
    bool m_isHeadRead = false;
    int m_failuresInRow = 0;
};

VellContentReader::VellContentReader(const VellSession *session, const QString &fileId,
                                     qint64 sizeBytes, QObject *parent)
    : QObject(parent),
      d(std::make_unique<Private>(this, SessionAccess::scope(session), fileId, sizeBytes))
{}

VellContentReader::~VellContentReader() = default;

VellContentReader::Private::Private(VellContentReader *reader, const ServiceScope &scope,
                                    const QString &fileId, qint64 sizeBytes)
    : q(reader), m_requests(scope.settings),
      m_url(m_requests.settings().baseApi + QLatin1String("base-service/files/") + fileId),
      m_sizeBytes(sizeBytes)
{
    m_delay.setSingleShot(true);
    QObject::connect(&m_delay, &QTimer::timeout, q, [this] { start(); });
    m_delay.start(0);
}

void VellContentReader::Private::start()
{
    const RequestScope scope(m_requests);
    m_requests.forgetFailure();
    m_isHeadRead = false;
    NetworkManager *const manager = NetworkManager::instance();
    m_reply =
        m_position > 0 ? manager->getFrom(m_url, m_position, m_entityTag) : manager->get(m_url);
    m_reply->setParent(q);
    m_reply->setReadBufferSize(BufferBytes);
    QObject::connect(m_reply, &QNetworkReply::readyRead, q, [this] { take(); });
    QObject::connect(m_reply, &QNetworkReply::finished, q, [this] { endAttempt(); });
}

void VellContentReader::Private::take()
{
    // The body of an error response is a message.
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status / 100 != 2)
        return;
    if (const VellError error = readHead()) {
        end(error);
        return;
    }
    const QByteArray data = m_reply->readAll();
    if (data.isEmpty())
        return;
    m_hash.addData(data);
    m_position += data.size();
    m_failuresInRow = 0;
    Q_EMIT q->received(data);
}

//! \return an error if the response is the rest of another content
VellError VellContentReader::Private::readHead()
{
    if (m_isHeadRead)
        return {};
    m_isHeadRead = true;
    const QByteArray tag = m_reply->rawHeader("ETag");
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (m_position > 0 && (status != PartialContent || tag != m_entityTag))
        return VellError::of(Kind::ChangedMeanwhile, TransferText::otherContent());
    m_entityTag = tag;
    return {};
}

void VellContentReader::Private::endAttempt()
{
    m_reply->deleteLater();
    if (m_reply->error() != QNetworkReply::NoError) {
        const auto failure = m_requests.failure();
        tryAgain(failure ? VellError::of(*failure) : VellError::of(Kind::Unclear));
        return;
    }
    const QPointer<VellContentReader> self(q);
    take();
    if (self && m_reply)
        end(contentError());
}

void VellContentReader::Private::tryAgain(const VellError &error)
{
    // Without an entity tag it is not known whether the rest belongs to the received bytes.
    const bool canGoOn = m_position == 0 || !m_entityTag.isEmpty();
    if (!error.isTemporary() || !canGoOn || ++m_failuresInRow >= MostFailuresInRow) {
        end(error);
        return;
    }
    m_delay.start(FirstDelayMs << (m_failuresInRow - 1));
}

//! Checks the size and the MD5 of the whole content.
VellError VellContentReader::Private::contentError() const
{
    if (m_sizeBytes >= 0 && m_position != m_sizeBytes)
        return VellError::of(Kind::ServiceFailed, TransferText::otherSize(m_position, m_sizeBytes));
    QByteArray md5 = m_entityTag;
    md5.replace('"', "");
    if (md5.size() == Md5Digits && md5.toLower() != m_hash.result().toHex())
        return VellError::of(Kind::ServiceFailed, TransferText::otherContent());
    return {};
}

void VellContentReader::Private::end(const VellError &error)
{
    if (m_reply) {
        m_reply->disconnect(q);
        m_reply->abort();
        m_reply->deleteLater();
        m_reply = nullptr;
    }
    if (error)
        Q_EMIT q->failed(error);
    else
        Q_EMIT q->finished();
}
