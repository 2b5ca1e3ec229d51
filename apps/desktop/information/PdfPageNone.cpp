#include <desktop/information/PdfPage.h>

namespace desktop {

bool pdf_page::isAvailable()
{
    return false;
}

QImage pdf_page::readFirst(const QByteArray &, const QSize &)
{
    return {};
}

} // namespace desktop
