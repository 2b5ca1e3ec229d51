#pragma once

#include <documents/VellDocuments.h>

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

namespace desktop {

//! \brief Lists and revokes the shares of the project.
class SharesDialog : public QDialog
{
    Q_OBJECT

public:
    //! \param documents must outlive the dialog
    explicit SharesDialog(VellDocuments *documents, QWidget *parent = nullptr);

private:
    void reload();
    void fill();
    void revoke();

    VellDocuments *const m_documents;
    QList<VellShare> m_shares;
    QTreeWidget *m_list;
    QLabel *m_message;
    QPushButton *m_revoke = nullptr;
};

} // namespace desktop
