#include <desktop/information/PictureReading.h>

#include <desktop/information/PdfPage.h>

#include <QBuffer>
#include <QImageReader>

namespace desktop {

namespace {

constexpr qint64 MostPixels = 100'000'000; // four bytes each after decoding

bool isPdf(const QString &suffix)
{
    return pdf_page::isAvailable()
        && suffix.compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0;
}

} // namespace

bool picture_reading::canRead(const QString &suffix)
{
    return isPdf(suffix)
        || QImageReader::supportedImageFormats().contains(suffix.toLower().toLatin1());
}

QImage picture_reading::read(const QByteArray &content, const QString &suffix, const QSize &most)
{
    if (isPdf(suffix))
        return pdf_page::readFirst(content, most);
    QBuffer buffer;
    buffer.setData(content);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!size.isValid() || qint64(size.width()) * size.height() > MostPixels)
        return {};
    if (size.width() > most.width() || size.height() > most.height())
        reader.setScaledSize(size.scaled(most, Qt::KeepAspectRatio));
    return reader.read();
}

} // namespace desktop
