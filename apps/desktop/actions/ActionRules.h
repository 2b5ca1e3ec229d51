#pragma once

#include <desktop/actions/ActionId.h>
#include <desktop/window/Location.h>

#include <document_model/VellDocument.h>

#include <QList>
#include <QString>

namespace desktop {

//! \brief The state of the window that decides which actions are possible.
struct ActionState
{
    Location location;
    QList<VellDocument> selection;
    bool isSelectionFetched = true; //!< false if #selection does not contain all selected entries
    bool isConnected = false; //!< a project is open
    bool isOnline = false;
    bool mayUpload = false; //!< into the folder of #location
    bool mayPurge = false;
    bool mayShare = false;
    bool canPaste = false; //!< the clipboard has documents or files
    bool canUndo = false;
    bool canGoBack = false;
    bool canGoForward = false;
};

//! The reason why an action is not possible.
namespace action_rules {

//! \return a sentence for the user; empty if the action is possible
QString refusal(ActionId action, const ActionState &state);

} // namespace action_rules

} // namespace desktop
