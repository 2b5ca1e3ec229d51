#pragma once

namespace desktop {

//! \brief Everything that the user can do in the main window, in the order of the table of Actions.
enum class ActionId {
    NewFolder,
    UploadFiles,
    UploadFolder,
    Open,
    Download,
    Rename,
    Cut,
    Paste,
    Delete,
    Restore,
    EmptyRecycleBin,
    Undo,
    SelectAll,
    MarkFavorite,
    MarkFrequent,
    Versions,
    Share,
    Shares,
    Back,
    Forward,
    Up,
    Reload,
    EditPath,
    Search,
    DetailsView,
    IconsView,
    Connect,
    Settings,
    FirstSteps,
    Quit,
};

constexpr int ActionCount = int(ActionId::Quit) + 1;

} // namespace desktop
