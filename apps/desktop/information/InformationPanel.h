#pragma once

#include <document_model/VellDocument.h>

#include <QPointer>
#include <QWidget>

class QFormLayout;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QScrollArea;
class VellDocuments;
class VellOperation;

namespace desktop {

class Preview;

//! \brief The details of the selected document.
class InformationPanel : public QWidget
{
    Q_OBJECT

public:
    //! \param documents must outlive the panel
    explicit InformationPanel(VellDocuments *documents, QWidget *parent = nullptr);

    //! Shows the details if there is only one document, otherwise the number of \a documents.
    void showDocuments(const QList<VellDocument> &documents);

Q_SIGNALS:
    void versionsRequested(const VellDocument &document);
    void remarkChanged(const VellDocument &document, const QString &remark);

private:
    void buildFields();
    QLabel *addField(const QString &title, const QString &name);
    void fill();
    void askForPath();
    void showPassword();

    VellDocuments *const m_documents;
    VellDocument m_document; // without _id if there is not exactly one
    QScrollArea *m_area;
    QWidget *m_page;
    QLabel *m_nothing;
    Preview *m_preview;
    QLabel *m_name;
    QFormLayout *m_form = nullptr;
    QLabel *m_type = nullptr;
    QLabel *m_size = nullptr;
    QLabel *m_folder = nullptr;
    QLabel *m_changed = nullptr;
    QLabel *m_created = nullptr;
    QLabel *m_rights = nullptr;
    QLabel *m_links = nullptr;
    QPushButton *m_password = nullptr;
    QPlainTextEdit *m_remark = nullptr;
    QPushButton *m_keepRemark = nullptr;
    QPushButton *m_versions = nullptr;
    QPointer<VellOperation> m_request;
};

} // namespace desktop
