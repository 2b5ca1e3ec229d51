#pragma once

#include <models/DropRequest.h>

#include <document_model/VellDocument.h>

#include <algorithm>
#include <memory>
#include <vector>

//! \brief A folder of VellFolderModel with those below it that are known.
struct FolderNode
{
    enum class State {
        Unknown, //!< nobody has asked for the folders below
        Asking,
        Known,
        Failed,
    };

    ~FolderNode() { dropRequest(question, &receiver); }

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
    QPointer<VellOperation> question; //!< asks for the children
    QObject receiver; //!< of the answer, so that none comes for a node that is gone
};
