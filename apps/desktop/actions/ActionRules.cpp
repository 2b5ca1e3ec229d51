#include <desktop/actions/ActionRules.h>

#include <desktop/window/Rights.h>

#include <QCoreApplication>

#include <algorithm>

namespace desktop {

namespace {

class RuleText
{
    Q_DECLARE_TR_FUNCTIONS(desktop::ActionRules)

public:
    static QString notConnected() { return tr("No project is open."); }
    static QString offline() { return tr("The service cannot be reached now."); }
    static QString onlyInFolders() { return tr("This is only possible in a folder."); }
    static QString mayNotAdd() { return tr("You may not add anything to this folder."); }
    static QString onlyInBin() { return tr("This is only possible in the recycle bin."); }
    static QString notInBin() { return tr("Restore it from the recycle bin first."); }
    static QString nothingSelected() { return tr("Nothing is selected."); }
    static QString notFetched()
    {
        return tr("Some of the selected entries have not been loaded yet. Select fewer entries.");
    }
    static QString onlyOne() { return tr("Select one entry."); }
    static QString onlyFile() { return tr("Select one file."); }
    static QString mayNotEdit(const QString &name)
    {
        return tr("You may not change “%1”.").arg(name);
    }
    static QString mayNotDelete(const QString &name)
    {
        return tr("You may not delete “%1”.").arg(name);
    }
    static QString mayNotDownload(const QString &name)
    {
        return tr("You may not download “%1”.").arg(name);
    }
    static QString mayNotPurge()
    {
        return tr("Only an owner of the project may empty the recycle bin.");
    }
    static QString mayNotShare() { return tr("You may not share documents of this project."); }
    static QString nothingToPaste()
    {
        return tr("The clipboard contains neither cut documents nor files.");
    }
    static QString nothingToUndo() { return tr("There is nothing to undo."); }
    static QString noPlace() { return tr("There is no such place."); }
};

QString needSelection(const ActionState &state)
{
    if (!state.isSelectionFetched)
        return RuleText::notFetched();
    return state.selection.isEmpty() ? RuleText::nothingSelected() : QString();
}

//! \param sentence the reason, with "%1" for the name of the first document without the \a right
QString needRight(const ActionState &state, const QString &right,
                  QString (*sentence)(const QString &name))
{
    QString refusal = needSelection(state);
    if (!refusal.isEmpty())
        return refusal;
    if (state.location.kind == Location::Kind::RecycleBin)
        return RuleText::notInBin();
    const auto lacking = std::find_if(
        state.selection.begin(), state.selection.end(),
        [&right](const VellDocument &document) { return !rights::may(document, right); });
    return lacking == state.selection.end() ? QString() : sentence(lacking->name);
}

QString needUpload(const ActionState &state)
{
    if (state.location.kind != Location::Kind::Folder)
        return RuleText::onlyInFolders();
    return state.mayUpload ? QString() : RuleText::mayNotAdd();
}

QString needBin(const ActionState &state)
{
    return state.location.kind == Location::Kind::RecycleBin ? QString() : RuleText::onlyInBin();
}

QString firstOf(std::initializer_list<QString> refusals)
{
    const auto *const found = std::find_if(refusals.begin(), refusals.end(),
                                           [](const QString &text) { return !text.isEmpty(); });
    return found == refusals.end() ? QString() : *found;
}

QString unless(bool isPossible, const QString &refusal)
{
    return isPossible ? QString() : refusal;
}

bool isAlwaysPossible(ActionId action)
{
    switch (action) {
    case ActionId::Connect:
    case ActionId::Settings:
    case ActionId::FirstSteps:
    case ActionId::Quit:
    case ActionId::DetailsView:
    case ActionId::IconsView:
        return true;
    default:
        return false;
    }
}

bool worksOffline(ActionId action)
{
    switch (action) {
    case ActionId::Back:
    case ActionId::Forward:
    case ActionId::Up:
    case ActionId::Reload:
    case ActionId::EditPath:
    case ActionId::Search:
    case ActionId::SelectAll:
    case ActionId::UploadFiles: // the queue waits for the service
    case ActionId::UploadFolder:
    case ActionId::Download:
        return true;
    default:
        return false;
    }
}

QString ownRefusal(ActionId action, const ActionState &state)
{
    const bool isOne = state.selection.size() == 1;
    switch (action) {
    case ActionId::NewFolder:
    case ActionId::UploadFiles:
    case ActionId::UploadFolder:
        return needUpload(state);
    case ActionId::Paste:
        return firstOf({needUpload(state), unless(state.canPaste, RuleText::nothingToPaste())});
    case ActionId::Open:
        if (isOne && rights::isFolder(state.selection.constFirst()))
            return {};
        return firstOf({needRight(state, rights::download(), RuleText::mayNotDownload),
                        unless(isOne, RuleText::onlyOne())});
    case ActionId::Download:
        return needRight(state, rights::download(), RuleText::mayNotDownload);
    case ActionId::Rename:
        return firstOf({needRight(state, rights::edit(), RuleText::mayNotEdit),
                        unless(isOne, RuleText::onlyOne())});
    case ActionId::Cut:
        return needRight(state, rights::edit(), RuleText::mayNotEdit);
    case ActionId::Delete:
        return needRight(state, rights::remove(), RuleText::mayNotDelete);
    case ActionId::Restore:
        return firstOf({needBin(state), needSelection(state)});
    case ActionId::EmptyRecycleBin:
        return firstOf({needBin(state), unless(state.mayPurge, RuleText::mayNotPurge())});
    case ActionId::Undo:
        return unless(state.canUndo, RuleText::nothingToUndo());
    case ActionId::MarkFavorite:
    case ActionId::MarkFrequent:
        return firstOf(
            {needSelection(state),
             unless(state.location.kind != Location::Kind::RecycleBin, RuleText::notInBin())});
    case ActionId::Versions:
        return unless(isOne && !rights::isFolder(state.selection.constFirst())
                          && state.location.kind != Location::Kind::RecycleBin,
                      RuleText::onlyFile());
    case ActionId::Share:
        return firstOf({needRight(state, rights::download(), RuleText::mayNotDownload),
                        unless(state.mayShare, RuleText::mayNotShare())});
    case ActionId::Back:
        return unless(state.canGoBack, RuleText::noPlace());
    case ActionId::Forward:
        return unless(state.canGoForward, RuleText::noPlace());
    case ActionId::Up:
        return unless(state.location != Location::folder(QString()), RuleText::noPlace());
    default:
        return {};
    }
}

} // namespace

QString action_rules::refusal(ActionId action, const ActionState &state)
{
    if (isAlwaysPossible(action))
        return {};
    if (!state.isConnected)
        return RuleText::notConnected();
    QString own = ownRefusal(action, state);
    if (!own.isEmpty())
        return own;
    return unless(state.isOnline || worksOffline(action), RuleText::offline());
}

} // namespace desktop
