#include <velldoc/transfer/Downloader.h>

#include <velldoc/Context.h>
#include <velldoc/Text.h>
#include <velldoc/output/Interrupt.h>

#include <VellNetwork/NetworkManager.h>

#include <QCryptographicHash>
#include <QEventLoop>
#include <QNetworkReply>
#include <QSaveFile>

namespace velldoc {

namespace {

constexpr qint64 BufferBytes = 1'048'576;
constexpr int MostTries = 4;
constexpr int PauseMs = 500;

//! \brief One answer on its way into a device.
class Transfer
{
public:
    Transfer(Session &session, const QString &fileId, QIODevice &device)
        : m_session(session), m_device(device),
          m_reply(NetworkManager::instance()->get(session.baseApi()
                                                  + QLatin1String("base-service/files/") + fileId))
    {
        m_reply->setReadBufferSize(BufferBytes);
    }
    ~Transfer()
    {
        m_reply->disconnect();
        m_reply->abort();
        m_reply->deleteLater();
    }
    Q_DISABLE_COPY(Transfer)

    //! \param progressed is called with the bytes so far
    template <typename Progressed>
    void run(Progressed progressed)
    {
        m_session.forgetFailure();
        QEventLoop loop;
        QObject::connect(m_reply, &QNetworkReply::readyRead, &loop, [&] {
            take();
            progressed(m_bytes);
            if (!m_writeError.isEmpty())
                loop.quit();
        });
        QObject::connect(m_reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        if (!m_reply->isFinished())
            loop.exec();
        Interrupt::check();
        // Of a refusal the body is a message, which was not taken.
        if (m_reply->isFinished() && !m_session.lastFailure())
            take();
        throwFailure();
    }

    qint64 bytes() const { return m_bytes; }

    //! Compares with the MD5 that the service gave as the entity tag, if it did.
    void verifyMd5()
    {
        constexpr int HexDigits = 32;
        QByteArray tag = m_reply->rawHeader("ETag");
        tag.replace('"', "");
        if (tag.size() == HexDigits && tag.toLower() != m_hash.result().toHex())
            throw Failure(ExitFailed,
                          Text::tr("What arrived is not what the service has: try again."));
    }

private:
    void take()
    {
        const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (status / 100 != 2)
            return;
        const QByteArray data = m_reply->readAll();
        m_hash.addData(data);
        if (m_writeError.isEmpty() && m_device.write(data) != data.size())
            m_writeError = m_device.errorString();
        m_bytes += data.size();
    }

    void throwFailure()
    {
        if (!m_writeError.isEmpty())
            throw Failure(ExitFailed,
                          Text::tr("The content cannot be written: %1.").arg(m_writeError));
        if (m_session.lastFailure())
            throw m_session.describe(*m_session.lastFailure());
    }

    Session &m_session;
    QIODevice &m_device;
    QNetworkReply *m_reply;
    QCryptographicHash m_hash{QCryptographicHash::Md5};
    qint64 m_bytes = 0;
    QString m_writeError;
};

} // namespace

Downloader::Downloader(Context &context, int fileCount, qint64 totalBytes)
    : m_session(context.session()), m_fileCount(fileCount), m_progress(context.out)
{
    m_progress.begin(QString(), totalBytes);
}

void Downloader::fetch(const Content &content, const QString &path)
{
    for (int tries = 1;; ++tries) {
        try {
            fetchOnce(content, path);
            return;
        } catch (const Failure &failure) {
            if (failure.code() != ExitNoConnection || tries == MostTries)
                throw;
        }
        Interrupt::pause(std::chrono::milliseconds(PauseMs << tries));
    }
}

void Downloader::fetchOnce(const Content &content, const QString &path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw Failure(ExitFailed,
                      Text::tr("%1 cannot be written: %2.").arg(path, file.errorString()));
    fetch(content, file);
    if (!file.commit())
        throw Failure(ExitFailed,
                      Text::tr("%1 cannot be written: %2.").arg(path, file.errorString()));
}

void Downloader::fetch(const Content &content, QIODevice &device)
{
    m_progress.setText(m_fileCount == 1
                           ? content.name
                           : Text::tr("%1 of %n file(s)", nullptr, m_fileCount).arg(m_doneCount));
    Transfer transfer(m_session, content.fileId, device);
    transfer.run([this](qint64 bytes) { m_progress.update(m_doneBytes + bytes); });
    if (content.sizeBytes >= 0 && transfer.bytes() != content.sizeBytes) {
        throw Failure(ExitFailed,
                      Text::tr("%1 arrived with %2 bytes instead of %3: try again.")
                          .arg(content.name, QString::number(transfer.bytes()),
                               QString::number(content.sizeBytes)));
    }
    transfer.verifyMd5();
    finishOne(transfer.bytes());
}

void Downloader::finishOne(qint64 bytes)
{
    m_doneBytes += bytes;
    ++m_doneCount;
    if (m_doneCount == m_fileCount) {
        m_progress.end();
        m_progress.clear();
    }
}

} // namespace velldoc
