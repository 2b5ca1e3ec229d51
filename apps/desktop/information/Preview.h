#pragma once

#include <document_model/VellDocument.h>

#include <QCache>
#include <QFutureWatcher>
#include <QImage>
#include <QLabel>

#include <memory>

class VellContentReader;
class VellSession;

namespace desktop {

//! \brief The picture of a document: its own if it is one, or has a first page, and is not too large, else that of its type.
class Preview : public QLabel
{
    Q_OBJECT

public:
    //! \param session must outlive the preview
    explicit Preview(const VellSession *session, QWidget *parent = nullptr);
    ~Preview() override;

    void showDocument(const VellDocument &document);

    //! Returns whether the document's own picture is shown.
    bool isOwnPicture() const { return m_isOwn; }

private:
    void showIcon();
    void showPicture(const QImage &picture);
    void fetch();
    void readFetched();
    void take();

    const VellSession *const m_session;
    VellDocument m_document;
    QCache<QString, QImage> m_pictures; // by content; null for one that cannot be shown
    std::unique_ptr<VellContentReader> m_reader;
    QByteArray m_content; // what m_reader has brought
    bool m_isFetched = false;
    QFutureWatcher<QImage> m_reading;
    QString m_readFileId; // of what m_reading reads
    bool m_isOwn = false;
};

} // namespace desktop
