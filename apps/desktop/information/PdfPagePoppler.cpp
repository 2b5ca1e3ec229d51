#include <desktop/information/PdfPage.h>

#include <QDeadlineTimer>

#include <algorithm>
#include <memory>
#include <poppler-qt5.h>

namespace desktop {

namespace {

constexpr int LongestMs = 5000; // a page can be made to take forever
constexpr double PointsPerInch = 72;

QImage render(const Poppler::Page &page, const QSize &most)
{
    const QSizeF size = page.pageSizeF();
    if (size.isEmpty())
        return {};
    const double scale = std::min(most.width() / size.width(), most.height() / size.height());
    QDeadlineTimer end(LongestMs);
    const QImage picture = page.renderToImage(
        scale * PointsPerInch, scale * PointsPerInch, -1, -1, -1, -1, Poppler::Page::Rotate0,
        nullptr, nullptr,
        [](const QVariant &deadline) {
            return static_cast<QDeadlineTimer *>(deadline.value<void *>())->hasExpired();
        },
        QVariant::fromValue<void *>(&end));
    return end.hasExpired() ? QImage() : picture;
}

} // namespace

bool pdf_page::isAvailable()
{
    return true;
}

QImage pdf_page::readFirst(const QByteArray &content, const QSize &most)
{
    const std::unique_ptr<Poppler::Document> document(Poppler::Document::loadFromData(content));
    if (!document || document->isLocked())
        return {};
    document->setRenderHint(Poppler::Document::Antialiasing);
    document->setRenderHint(Poppler::Document::TextAntialiasing);
    const std::unique_ptr<Poppler::Page> page(document->page(0));
    return page ? render(*page, most) : QImage();
}

} // namespace desktop
