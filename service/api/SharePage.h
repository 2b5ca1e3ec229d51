#pragma once

#include <service/records/Document.h>

#include <QList>
#include <QString>

namespace service {

//! The content of a page of a share.
struct SharePage
{
    QString title;
    QString basePath; //!< "/share/CODE"
    QString path; //!< address of this page
    int number = 1; //!< the first is 1
    bool hasNext = false;
    bool allowsDownload = false;
    QList<Document> documents;
};

//! Returns a page with a list of documents, with links to folders and, if downloads are allowed, to files.
QString shareListPage(const SharePage &page);

//! Returns a page with one sentence, for a share that cannot be shown.
QString shareMessagePage(const QString &title, const QString &sentence);

} // namespace service
