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

//! \brief The preview of a document: its content if it is a picture or a PDF file and not too large, otherwise the icon of its type.
class Preview : public QLabel
{
    Q_OBJECT

public:
    //! \param session must outlive the preview
    explicit Preview(const VellSession *session, QWidget *parent = nullptr);
    ~Preview() override;

    void showDocument(const VellDocument &document);

    //! Returns true if the content of the document is shown.
    bool isOwnPicture() const { return m_isOwn; }

private:
    void showIcon();
    void showPicture(const QImage &picture);
    void fetch();
    void readFetched();
    void take();

    const VellSession *const m_session;
    VellDocument m_document;
    QCache<QString, QImage> m_pictures; // by content; null if it cannot be shown
    std::unique_ptr<VellContentReader> m_reader;
    QByteArray m_content; // received by m_reader
    bool m_isFetched = false;
    QFutureWatcher<QImage> m_reading;
    QString m_readFileId; // the content of m_reading
    bool m_isOwn = false;
};

} // namespace desktop
