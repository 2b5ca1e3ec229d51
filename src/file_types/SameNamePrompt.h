#pragma once

#include <velldocumentdata_export.h>

#include <QString>

namespace VellPubDoc {

//! Shows a modal message box that asks the user what to do with a file whose name is taken, and returns the
//! QMessageBox::StandardButton of the answer.
//!
//! | button | label | meaning |
//! |---|---|---|
//! | QMessageBox::Ok (1024), the default | 替换 | replace the existing file |
//! | QMessageBox::Save (2048) | 新增 | keep the existing file and add the new one as \a newName |
//! | QMessageBox::Discard (8388608) | 跳过 | skip the new file |
//! | QMessageBox::Cancel (4194304) | 取消 | cancel the whole operation |
//!
//! Escape and the close button of the window return Cancel.
//!
//! \param fileName the name that is taken.
//! \param newName the name under which the new file would be kept.
//! \param applyToLater set to the state of the box's check box "do this for the following files" each time the user changes it,
//!     whatever the answer is. It is not written if the user does not change it: set it to false before. If it is true, use the
//!     returned button for the following files of the batch without asking again; the function stores nothing.
//!
//! To be called on the GUI thread. Runs an event loop until the user has answered.
//!
//! \since 0.1
//! \sa VellDocumentData::getValidDocName()
VELLDOCUMENTDATA_EXPORT int showSameNameMsgBox(const QString &fileName, const QString &newName,
                                               bool &applyToLater);

} // namespace VellPubDoc
