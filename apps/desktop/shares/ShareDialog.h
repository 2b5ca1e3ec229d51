#pragma once

#include <document_model/VellDocument.h>

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;
class VellDocuments;

namespace desktop {

//! \brief Creates an address for people without an account, and shows it once.
class ShareDialog : public QDialog
{
    Q_OBJECT

public:
    //! \param documents must outlive the dialog
    ShareDialog(VellDocuments *documents, const QList<VellDocument> &shared,
                QWidget *parent = nullptr);

private:
    void make();
    void copy();

    VellDocuments *const m_documents;
    QStringList m_ids;
    QCheckBox *m_ends;
    QDateEdit *m_end;
    QCheckBox *m_download;
    QLineEdit *m_address;
    QLabel *m_message;
    QPushButton *m_make = nullptr;
    QPushButton *m_copy = nullptr;
};

} // namespace desktop
