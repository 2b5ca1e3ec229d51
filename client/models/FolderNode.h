#pragma once

#include <models/DropRequest.h>

#include <document_model/VellDocument.h>

#include <algorithm>
#include <memory>
#include <vector>

//! \brief A folder of VellFolderModel with its known subfolders.
struct FolderNode
{
    enum class State {
        Unknown, //!< the subfolders have not been requested
        Asking,
        Known,
        Failed,
    };

    ~FolderNode() { dropRequest(request, &receiver); }

    int row() const
    {
        const auto &siblings = parent->children;
        return int(std::find_if(siblings.begin(), siblings.end(),
                                [this](const auto &node) { return node.get() == this; })
                   - siblings.begin());
    }

    VellDocument folder;
    FolderNode *parent = nullptr; //!< null for the top level
    State state = State::Unknown;
    std::vector<std::unique_ptr<FolderNode>> children; //!< by name
    QPointer<VellOperation> request; //!< for the children
    QObject receiver; //!< of the result: none arrives after the node has been deleted
};
