#pragma once

#include <document_model/VellDocument.h>

#include <QDialog>
#include <QList>

class QLabel;
class QPushButton;
class QTreeWidget;
class VellDocuments;
class VellTransferQueue;
struct VellError;
struct VellTransfer;

namespace desktop {

//! \brief The versions of a file: downloads one, makes one current again, edits its remark.
class VersionsDialog : public QDialog
{
    Q_OBJECT

public:
    //! \param documents and \a queue must outlive the dialog
    VersionsDialog(VellDocuments *documents, VellTransferQueue *queue, const VellDocument &document,
                   QWidget *parent = nullptr);

private:
    void reload();
    void fill();
    void chooseTarget();
    void fetch(const VellDocument &version, const QString &path);
    void onTransferEnded(const VellTransfer &transfer);
    void makeCurrent();
    void editRemark();
    void updateButtons();
    void say(const QString &text, const VellError &error);
    //! Returns the version of the current row; without `_id` if there is none.
    VellDocument version() const;

    VellDocuments *const m_documents;
    VellTransferQueue *const m_queue;
    VellDocument m_document;
    qint64 m_fetching = 0; // the transfer of the version that was requested last
    QList<VellDocument> m_versions; // newest first
    QTreeWidget *m_list;
    QLabel *m_message;
    QPushButton *m_fetch = nullptr;
    QPushButton *m_current = nullptr;
    QPushButton *m_remark = nullptr;
};

} // namespace desktop
