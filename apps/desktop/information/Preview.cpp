#include <desktop/information/Preview.h>

#include <desktop/information/PictureReading.h>
#include <desktop/window/Rights.h>

#include <file_types/FileTypes.h>
#include <transfer/VellContentReader.h>

#include <QtConcurrent>

#include <utility>

namespace desktop {

namespace {

constexpr qint64 MostBytes = 20'971'520;
constexpr int Side = 240;
constexpr int IconSide = 64;
constexpr int KeptPictures = 20;

} // namespace

Preview::Preview(const VellSession *session, QWidget *parent)
    : QLabel(parent), m_session(session), m_pictures(KeptPictures)
{
    setObjectName(QStringLiteral("preview"));
    setAlignment(Qt::AlignCenter);
    setMinimumSize(IconSide, IconSide);
    connect(&m_reading, &QFutureWatcherBase::finished, this, &Preview::take);
}

Preview::~Preview() = default;

void Preview::showDocument(const VellDocument &document)
{
    const VellDocument former = std::exchange(m_document, document);
    setAccessibleName(tr("Picture of %1").arg(document.name));
    if (former._id == document._id && former.fileId == document.fileId
        && former.suffix == document.suffix)
        return;
    m_reader.reset();
    m_isFetched = false;
    showIcon();
    const bool isReadable = !rights::isFolder(document) && document.fileSize <= MostBytes
        && picture_reading::canRead(document.suffix) && rights::may(document, rights::download());
    if (!isReadable)
        return;
    if (const QImage *const picture = m_pictures.object(document.fileId))
        showPicture(*picture);
    else
        fetch();
}

void Preview::showIcon()
{
    m_isOwn = false;
    setPixmap(VellPubDoc::getFileTypeIcon(m_document).pixmap(IconSide));
}

void Preview::showPicture(const QImage &picture)
{
    if (picture.isNull())
        return; // the icon remains
    setPixmap(QPixmap::fromImage(picture));
    m_isOwn = true;
}

void Preview::fetch()
{
    m_content.clear();
    m_reader =
        std::make_unique<VellContentReader>(m_session, m_document.fileId, m_document.fileSize);
    connect(m_reader.get(), &VellContentReader::received, this, [this](const QByteArray &part) {
        // If more than announced arrives, the end is an error.
        if (m_content.size() + part.size() <= MostBytes)
            m_content += part;
    });
    connect(m_reader.get(), &VellContentReader::finished, this, [this] {
        m_isFetched = true;
        readFetched();
    });
}

void Preview::readFetched()
{
    if (!m_isFetched || m_reading.isRunning())
        return;
    m_isFetched = false;
    m_readFileId = m_document.fileId;
    const QSize most = QSize(Side, Side) * devicePixelRatioF();
    m_reading.setFuture(QtConcurrent::run(
        picture_reading::read, std::exchange(m_content, QByteArray()), m_document.suffix, most));
}

void Preview::take()
{
    QImage picture = m_reading.result();
    picture.setDevicePixelRatio(devicePixelRatioF());
    m_pictures.insert(m_readFileId, new QImage(picture));
    if (m_readFileId == m_document.fileId)
        showPicture(picture);
    readFetched(); // another one that has arrived meanwhile
}

} // namespace desktop
