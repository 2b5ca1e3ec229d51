#include <desktop/actions/ActionRules.h>
#include <desktop/actions/ButtonText.h>
#include <desktop/search/SearchTerms.h>
#include <desktop/window/NavigationHistory.h>

#include <QTest>

using namespace desktop;

class TestDesktopRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void actionsArePossibleByRights_data();
    void actionsArePossibleByRights();
    void searchesBecomeConditions_data();
    void searchesBecomeConditions();
    void historyGoesBackAndForward();
    void buttonsHaveNoKeys_data();
    void buttonsHaveNoKeys();
};

namespace {

VellDocument entry(const QString &type, const QStringList &lacking = {})
{
    VellDocument document;
    document._id = type;
    document.name = QStringLiteral("plan.dwg");
    document.type = type;
    for (const char *const right : {"download", "edit", "delete", "upload"})
        document.auths.insert(QLatin1String(right), !lacking.contains(QLatin1String(right)));
    return document;
}

ActionState everything()
{
    ActionState state;
    state.isConnected = true;
    state.isOnline = true;
    state.mayUpload = true;
    state.mayPurge = true;
    state.mayShare = true;
    state.canPaste = true;
    state.canUndo = true;
    state.canGoBack = true;
    state.canGoForward = true;
    state.location = Location::folder(QStringLiteral("f"));
    state.selection = {entry(QStringLiteral("file"))};
    return state;
}

template <typename Change>
ActionState with(Change change)
{
    ActionState state = everything();
    change(state);
    return state;
}

} // namespace

Q_DECLARE_METATYPE(desktop::ActionId)
Q_DECLARE_METATYPE(desktop::ActionState)

void TestDesktopRules::actionsArePossibleByRights_data()
{
    using Id = ActionId;
    QTest::addColumn<ActionId>("action");
    QTest::addColumn<ActionState>("state");
    QTest::addColumn<QString>("refusal"); // a part of it; empty: possible
    const auto row = [](const char *name, Id id, const ActionState &state, const char *refusal) {
        QTest::newRow(name) << id << state << QString::fromLatin1(refusal);
    };
    const QString file = QStringLiteral("file");
    const auto without = [file](const char *right) {
        return with([&](ActionState &state) {
            state.selection = {entry(file), entry(file, {QLatin1String(right)})};
        });
    };
    const ActionState offline = with([](ActionState &s) { s.isOnline = false; });
    const ActionState bin =
        with([](ActionState &s) { s.location = Location::place(Location::Kind::RecycleBin); });
    const ActionState nothing = with([](ActionState &s) { s.selection.clear(); });
    const ActionState two = with([file](ActionState &s) {
        s.selection = {entry(file), entry(file)};
    });
    row("rename", Id::Rename, everything(), "");
    row("rename of two", Id::Rename, two, "Select one");
    row("rename without the right", Id::Rename, without("edit"), "You may not change");
    row("rename offline", Id::Rename, offline, "cannot be reached");
    row("delete two", Id::Delete, two, "");
    row("delete without the right", Id::Delete, without("delete"), "You may not delete");
    row("delete nothing", Id::Delete, nothing, "Nothing is selected");
    row("delete what is not fetched", Id::Delete,
        with([](ActionState &s) { s.isSelectionFetched = false; }), "not been loaded");
    row("delete in the bin", Id::Delete, bin, "Restore it");
    row("download without the right", Id::Download, without("download"), "You may not download");
    row("download offline", Id::Download, offline, "");
    row("new folder", Id::NewFolder, everything(), "");
    row("new folder without the right", Id::NewFolder,
        with([](ActionState &s) { s.mayUpload = false; }), "You may not add");
    row("new folder in the bin", Id::NewFolder, bin, "only possible in a folder");
    row("paste nothing", Id::Paste, with([](ActionState &s) { s.canPaste = false; }), "clipboard");
    row("restore", Id::Restore, bin, "");
    row("restore elsewhere", Id::Restore, everything(), "only possible in the recycle bin");
    row("empty the bin", Id::EmptyRecycleBin, bin, "");
    row("empty the bin as an editor", Id::EmptyRecycleBin, with([](ActionState &s) {
            s.location = Location::place(Location::Kind::RecycleBin);
            s.mayPurge = false;
        }),
        "Only an owner");
    row("share as a viewer", Id::Share, with([](ActionState &s) { s.mayShare = false; }),
        "You may not share");
    row("versions of a folder", Id::Versions,
        with([](ActionState &s) { s.selection = {entry(QStringLiteral("dir"))}; }), "one file");
    row("open a folder without rights", Id::Open, with([](ActionState &s) {
            s.selection = {entry(QStringLiteral("dir"), {QStringLiteral("download")})};
        }),
        "");
    row("up at the top", Id::Up, with([](ActionState &s) { s.location = Location(); }),
        "no such place");
    row("undo nothing", Id::Undo, with([](ActionState &s) { s.canUndo = false; }),
        "nothing to undo");
    row("reload without a project", Id::Reload, with([](ActionState &s) { s.isConnected = false; }),
        "No project");
    row("connect without a project", Id::Connect, ActionState(), "");
}

void TestDesktopRules::actionsArePossibleByRights()
{
    QFETCH(ActionId, action);
    QFETCH(ActionState, state);
    QFETCH(QString, refusal);
    const QString given = action_rules::refusal(action, state);
    if (refusal.isEmpty())
        QCOMPARE(given, QString());
    else
        QVERIFY2(given.contains(refusal), qPrintable(given));
}

void TestDesktopRules::searchesBecomeConditions_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("type");
    using Kind = SearchTerms::Kind;
    QTest::newRow("letters") << "plan" << int(Kind::Any) << "plan"
                             << "";
    QTest::newRow("signs are letters") << "a.b (1)+" << int(Kind::Any) << "a\\.b \\(1\\)\\+"
                                       << "";
    QTest::newRow("wildcards") << "p*n?" << int(Kind::Any) << "p.*n."
                               << "";
    QTest::newRow("folders") << "a" << int(Kind::Folders) << "a"
                             << "dir";
    QTest::newRow("drawings") << "a" << int(Kind::Drawings) << "a.*\\.(dwg|dxf|dwt|dws|dwf)$"
                              << "file";
}

void TestDesktopRules::searchesBecomeConditions()
{
    QFETCH(QString, text);
    QFETCH(int, kind);
    SearchTerms terms;
    terms.text = text;
    terms.kind = SearchTerms::Kind(kind);
    terms.period = SearchTerms::Period::Week;
    const VellDocumentConditon condition = terms.condition(QDate(2026, 3, 8));
    QTEST(condition.searchName, "pattern");
    QTEST(condition.type, "type");
    QVERIFY(!condition.hasParentId);
    QCOMPARE(condition.startTime.date(), QDate(2026, 3, 2));
    QCOMPARE(condition.endTime.date(), QDate(2026, 3, 8));
    terms.folderId = QStringLiteral("f");
    QVERIFY(terms.condition(QDate(2026, 3, 8)).isDeep);
}

void TestDesktopRules::historyGoesBackAndForward()
{
    NavigationHistory history;
    const Location a = Location::folder(QStringLiteral("a"));
    const Location b = Location::folder(QStringLiteral("b"));
    SearchTerms terms;
    terms.text = QStringLiteral("x");
    const Location x = Location::searched(terms);
    terms.text = QStringLiteral("xy");
    const Location xy = Location::searched(terms);
    history.visit(a);
    history.visit(a);
    QVERIFY(!history.canGoBack());
    history.visit(b);
    history.visit(x);
    history.visit(xy);
    QCOMPARE(history.goBack() == b, true);
    QCOMPARE(history.goForward() == xy, true);
    QVERIFY(!history.canGoForward());
    history.goBack();
    history.goBack();
    history.visit(xy);
    QVERIFY(!history.canGoForward());
    QCOMPARE(history.goBack() == a, true);
}

void TestDesktopRules::buttonsHaveNoKeys_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("English") << QStringLiteral("&Upload Files…") << QStringLiteral("Upload Files");
    QTest::newRow("Chinese") << QStringLiteral("上传文件(&U)…") << QStringLiteral("上传文件");
    QTest::newRow("none") << QStringLiteral("Undo (1)") << QStringLiteral("Undo (1)");
}

void TestDesktopRules::buttonsHaveNoKeys()
{
    QFETCH(QString, text);
    QTEST(buttonText(text), "shown");
}

QTEST_GUILESS_MAIN(TestDesktopRules)
#include "tst_desktop_rules.moc"
