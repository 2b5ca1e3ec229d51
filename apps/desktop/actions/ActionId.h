#pragma once

namespace desktop {

//! \brief The actions of the main window, in the order of the table in Actions.cpp.
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
