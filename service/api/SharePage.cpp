#include <service/api/SharePage.h>

#include <service/records/Times.h>

#include <QLocale>

namespace service {

namespace {

QString pageFrame(const QString &title, const QString &content)
{
    return QStringLiteral(
               "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
               "<meta name=\"viewport\" content=\"width=device-width\">"
               "<meta name=\"robots\" content=\"noindex\"><title>%1</title><style>"
               "body{font-family:sans-serif;max-width:50em;margin:2em auto;padding:0 1em}"
               "table{width:100%;border-collapse:collapse}"
               "td{padding:.4em;border-bottom:1px solid #ccc}td+td{text-align:right}"
               "</style></head><body><h1>%1</h1>\n")
               .arg(title.toHtmlEscaped())
        + content + QStringLiteral("</body></html>\n");
}

QString nameCell(const SharePage &page, const Document &document)
{
    QString name = document.name.toHtmlEscaped();
    if (document.isFolder()) {
        return QStringLiteral("<a href=\"%1/folders/%2\">%3/</a>")
            .arg(page.basePath, document.id, name);
    }
    if (!page.allowsDownload)
        return name;
    return QStringLiteral("<a href=\"%1/files/%2\">%3</a>").arg(page.basePath, document.id, name);
}

QString turnLink(const SharePage &page, int number, const char *text)
{
    return QStringLiteral("<a href=\"%1?page=%2\">%3</a> ")
        .arg(page.path)
        .arg(number)
        .arg(QLatin1String(text));
}

QString turnLinks(const SharePage &page)
{
    QString links;
    if (page.number > 1)
        links += turnLink(page, page.number - 1, "Previous page");
    if (page.hasNext)
        links += turnLink(page, page.number + 1, "Next page");
    return links.isEmpty() ? links : QStringLiteral("<p>") + links + QStringLiteral("</p>\n");
}

} // namespace

QString shareListPage(const SharePage &page)
{
    if (page.documents.isEmpty() && page.number == 1)
        return pageFrame(page.title, QStringLiteral("<p>There is nothing in here.</p>\n"));
    QString rows;
    for (const Document &document : page.documents) {
        const QString size = document.isFolder()
            ? QString()
            : QLocale::c().formattedDataSize(document.size).toHtmlEscaped();
        // For each name separately, so that a "%1" in a name is not replaced.
        rows += QStringLiteral("<tr><td>") + nameCell(page, document) + QStringLiteral("</td><td>")
            + size + QStringLiteral("</td><td>") + timeText(document.updatedAt).left(10)
            + QStringLiteral("</td></tr>\n");
    }
    return pageFrame(page.title,
                     QStringLiteral("<table>\n") + rows + QStringLiteral("</table>\n")
                         + turnLinks(page));
}

QString shareMessagePage(const QString &title, const QString &sentence)
{
    return pageFrame(title,
                     QStringLiteral("<p>") + sentence.toHtmlEscaped() + QStringLiteral("</p>\n"));
}

} // namespace service
