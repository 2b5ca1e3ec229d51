#pragma once

#include <desktop/editing/EditedFiles.h>

#include <QDialog>

namespace desktop {

//! \brief Shows the local file and the document that another user has changed side by side, and asks how to resolve the conflict.
//!
//! Accepted with the decision way(); rejected if the user decides later.
class VersionConflictDialog : public QDialog
{
    Q_OBJECT

public:
    //! \param current the document on the service; without `_id` if it has been deleted
    //! \param changedBy the user who has changed it
    VersionConflictDialog(const QString &path, const VellDocument &current,
                          const QString &changedBy, QWidget *parent = nullptr);

    EditedFiles::Way way() const { return m_way; }

private:
    EditedFiles::Way m_way = EditedFiles::Way::KeepBoth;
};

} // namespace desktop
