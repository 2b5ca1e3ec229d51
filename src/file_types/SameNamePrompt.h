#pragma once

#include <velldocumentdata_export.h>

#include <QString>

namespace VellPubDoc {

//! Asks the user, with one modal box, what to do about a file whose name is already taken, and
//! returns the QMessageBox::StandardButton code of the answer.
//!
//! | code | label | the user wants to |
//! |---|---|---|
//! | QMessageBox::Ok (1024), the default | 替换 | replace the existing file with the new one |
//! | QMessageBox::Save (2048) | 新增 | keep the existing file and add the new one as \a newName |
//! | QMessageBox::Discard (8388608) | 跳过 | leave the new file out |
//! | QMessageBox::Cancel (4194304) | 取消 | stop the whole operation |
//!
//! Escape and the window's close button are Cancel.
//!
//! \param fileName the name that is taken.
//! \param newName the name under which the new file would be kept.
//! \param applyToLater set to whether the box's "do this for the following files" is ticked, each
//!     time the user changes it, whatever the answer is. Not written when the user never touches
//!     it: set it to false before. While it is true, use the returned code for the following files
//!     of the batch without asking again; the function remembers nothing.
//!
//! Only on the GUI thread. Runs an event loop until the user has answered, so that anything that
//! the program does by events can happen meanwhile.
VELLDOCUMENTDATA_EXPORT int showSameNameMsgBox(const QString &fileName, const QString &newName,
                                               bool &applyToLater);

} // namespace VellPubDoc
