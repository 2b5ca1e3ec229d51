#pragma once

#include <service/records/Document.h>

#include <QList>
#include <QString>

namespace service {

//! What a page about a share shows.
struct SharePage
{
    QString title;
    QString basePath; //!< "/share/CODE"
    QString path; //!< of this page
    int number = 1; //!< the first is 1
    bool hasNext = false;
    bool allowsDownload = false;
    QList<Document> documents;
};

//! A list of documents: folders can be opened, files downloaded where that is allowed.
QString shareListPage(const SharePage &page);

//! A page that says in one sentence why there is nothing to see.
QString shareMessagePage(const QString &title, const QString &sentence);

} // namespace service
