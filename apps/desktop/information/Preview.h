#pragma once

#include <document_model/VellDocument.h>

#include <QCache>
#include <QFutureWatcher>
#include <QImage>
#include <QLabel>
#include <QPointer>
#include <QTemporaryDir>

class VellDocuments;
class VellOperation;

namespace desktop {

//! \brief The picture of a document: its own if it is one and not too large, else that of its type.
class Preview : public QLabel
{
    Q_OBJECT

public:
    //! \param documents must outlive the preview
    explicit Preview(VellDocuments *documents, QWidget *parent = nullptr);

    void showDocument(const VellDocument &document);

    //! Returns whether the document's own picture is shown.
    bool isOwnPicture() const { return m_isOwn; }

private:
    void showIcon(const VellDocument &document);
    void fetch(const VellDocument &document);
    void take();

    VellDocuments *const m_documents;
    QTemporaryDir m_folder;
    QCache<QString, QImage> m_pictures; // by content
    QFutureWatcher<QImage> m_reading;
    QPointer<VellOperation> m_request;
    QString m_fileId; // of the document that is shown
    QString m_readFileId; // of what m_reading reads
    bool m_isOwn = false;
};

} // namespace desktop
