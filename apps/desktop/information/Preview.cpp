#include <desktop/information/Preview.h>

#include <desktop/window/Rights.h>

#include <documents/VellDocuments.h>
#include <file_types/FileTypes.h>

#include <QImageReader>
#include <QUuid>
#include <QtConcurrent>

namespace desktop {

namespace {

constexpr qint64 MostBytes = 20'971'520;
constexpr qint64 MostPixels = 100'000'000; // decoded they take four bytes each
constexpr int Side = 240;
constexpr int IconSide = 64;
constexpr int KeptPictures = 20;

//! Reads the picture at \a path, not larger than it is shown, and removes the file. On any thread.
QImage readPicture(const QString &path, const QSize &most)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    QImage picture;
    if (size.isValid() && qint64(size.width()) * size.height() <= MostPixels) {
        if (size.width() > most.width() || size.height() > most.height())
            reader.setScaledSize(size.scaled(most, Qt::KeepAspectRatio));
        picture = reader.read();
    }
    QFile::remove(path);
    return picture;
}

} // namespace

Preview::Preview(VellDocuments *documents, QWidget *parent)
    : QLabel(parent), m_documents(documents), m_pictures(KeptPictures)
{
    setObjectName(QStringLiteral("preview"));
    setAlignment(Qt::AlignCenter);
    setMinimumSize(IconSide, IconSide);
    connect(&m_reading, &QFutureWatcherBase::finished, this, &Preview::take);
}

void Preview::showDocument(const VellDocument &document)
{
    if (m_request)
        m_request->abort();
    m_fileId = document.fileId;
    showIcon(document);
    const bool isPicture = !rights::isFolder(document)
        && QImageReader::supportedImageFormats().contains(document.suffix.toLower().toLatin1());
    if (!isPicture || document.fileSize > MostBytes || !rights::may(document, rights::download()))
        return;
    if (const QImage *const picture = m_pictures.object(document.fileId)) {
        setPixmap(QPixmap::fromImage(*picture));
        m_isOwn = true;
    } else {
        fetch(document);
    }
}

void Preview::showIcon(const VellDocument &document)
{
    m_isOwn = false;
    setPixmap(VellPubDoc::getFileTypeIcon(document).pixmap(IconSide));
    setAccessibleName(tr("Picture of %1").arg(document.name));
}

void Preview::fetch(const VellDocument &document)
{
    const QString path = m_folder.filePath(QUuid::createUuid().toString(QUuid::WithoutBraces));
    m_request = m_documents->content(document.fileId, path, MostBytes)
                    ->then(this, [this, fileId = document.fileId](const QString &fetched) {
                        if (fileId != m_fileId || m_reading.isRunning()) {
                            QFile::remove(fetched);
                            return;
                        }
                        m_readFileId = fileId;
                        const QSize most = QSize(Side, Side) * devicePixelRatioF();
                        m_reading.setFuture(QtConcurrent::run(readPicture, fetched, most));
                    });
}

void Preview::take()
{
    QImage picture = m_reading.result();
    if (picture.isNull())
        return; // the icon stays
    picture.setDevicePixelRatio(devicePixelRatioF());
    m_pictures.insert(m_readFileId, new QImage(picture));
    if (m_readFileId != m_fileId)
        return;
    setPixmap(QPixmap::fromImage(picture));
    m_isOwn = true;
}

} // namespace desktop
