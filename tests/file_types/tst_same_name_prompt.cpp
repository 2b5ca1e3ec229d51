#include <file_types/SameNamePrompt.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

namespace {

// What stands in the box, read while it is open.
struct ShownBox
{
    QString title;
    QString text;
    QString informativeText;
    QString applyText;
    bool isApplyTicked = true;
    QMap<int, QString> labels; // standard button to its label
    int defaultButton = 0;
    qint64 windowIcon = 0;
    bool hasOwnWindowIcon = false; // a box without one answers with the application's too
    bool isModal = false;
    bool hasParent = true;
};

ShownBox read(QMessageBox *box)
{
    ShownBox shown;
    shown.title = box->windowTitle();
    shown.text = box->text();
    shown.informativeText = box->informativeText();
    shown.applyText = box->checkBox()->text();
    shown.isApplyTicked = box->checkBox()->isChecked();
    const QList<QAbstractButton *> buttons = box->buttons();
    for (QAbstractButton *button : buttons)
        shown.labels.insert(box->standardButton(button), button->text());
    shown.defaultButton = box->standardButton(box->defaultButton());
    shown.windowIcon = box->windowIcon().cacheKey();
    shown.hasOwnWindowIcon = box->testAttribute(Qt::WA_SetWindowIcon);
    shown.isModal = box->isModal();
    shown.hasParent = box->parent() != nullptr;
    return shown;
}

using UserAction = std::function<void(QMessageBox *)>;

// The user at the box: acts as soon as it is open. An action that does not close it is followed by
// Escape, so that the test ends.
class User
{
public:
    explicit User(const UserAction &action)
    {
        QTimer::singleShot(0, qApp, [this, action] {
            m_box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!m_box || !QTest::qWaitForWindowActive(m_box))
                return;
            m_hasActed = true;
            action(m_box);
            m_hasClosed = !m_box || !m_box->isVisible();
            if (!m_hasClosed)
                QTest::keyClick(m_box, Qt::Key_Escape);
        });
    }
    bool hasClosedTheBox() const { return m_hasActed && m_hasClosed; }
    bool isBoxGone() const { return m_box.isNull(); }

private:
    QPointer<QMessageBox> m_box;
    bool m_hasActed = false;
    bool m_hasClosed = false;
};

UserAction press(int button)
{
    return [button](QMessageBox *box) {
        QTest::mouseClick(box->button(static_cast<QMessageBox::StandardButton>(button)),
                          Qt::LeftButton);
    };
}

UserAction type(Qt::Key key)
{
    return [key](QMessageBox *box) { QTest::keyClick(box->focusWidget(), key); };
}

void clickApplyBox(QMessageBox *box)
{
    QTest::mouseClick(box->checkBox(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(8, box->checkBox()->height() / 2));
}

} // namespace

Q_DECLARE_METATYPE(UserAction)

class TestSameNamePrompt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answerIsTheCodeOfTheButton_data();
    void answerIsTheCodeOfTheButton();
    void applyToLaterFollowsTheCheckBox_data();
    void applyToLaterFollowsTheCheckBox();
    void applyToLaterIsWrittenAtOnce();
    void boxShowsTextsAndLabels_data();
    void boxShowsTextsAndLabels();
    void nextBoxStartsUnticked();
    void boxIsGoneAfterwards();
};

void TestSameNamePrompt::answerIsTheCodeOfTheButton_data()
{
    QTest::addColumn<UserAction>("action");
    QTest::addColumn<int>("code");

    QTest::newRow("replace") << press(QMessageBox::Ok) << 1024;
    QTest::newRow("add") << press(QMessageBox::Save) << 2048;
    QTest::newRow("skip") << press(QMessageBox::Discard) << 8388608;
    QTest::newRow("cancel") << press(QMessageBox::Cancel) << 4194304;
    QTest::newRow("Enter at once") << type(Qt::Key_Return) << 1024;
    QTest::newRow("Enter of the number block") << type(Qt::Key_Enter) << 1024;
    QTest::newRow("Escape") << type(Qt::Key_Escape) << 4194304;
    QTest::newRow("close button of the window")
        << UserAction([](QMessageBox *box) { box->close(); }) << 4194304;
}

void TestSameNamePrompt::answerIsTheCodeOfTheButton()
{
    QFETCH(UserAction, action);
    QFETCH(int, code);

    const User user(action);
    bool applyToLater = false;
    const int answer = VellPubDoc::showSameNameMsgBox("a.dwg", "a(1).dwg", applyToLater);
    QVERIFY(user.hasClosedTheBox());
    QCOMPARE(answer, code);
    QCOMPARE(applyToLater, false);
}

void TestSameNamePrompt::applyToLaterFollowsTheCheckBox_data()
{
    QTest::addColumn<int>("clicks");
    QTest::addColumn<UserAction>("action");
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("after");

    struct Answer
    {
        const char *name;
        UserAction action;
    };
    const Answer answers[] = {
        {"replace", press(QMessageBox::Ok)},   {"add", press(QMessageBox::Save)},
        {"skip", press(QMessageBox::Discard)}, {"cancel", press(QMessageBox::Cancel)},
        {"Escape", type(Qt::Key_Escape)},      {"close", [](QMessageBox *box) { box->close(); }},
    };
    for (const Answer &answer : answers) {
        for (const bool before : {false, true}) {
            const char *start = before ? "true" : "false";
            QTest::addRow("%s: untouched stays %s", answer.name, start)
                << 0 << answer.action << before << before;
            QTest::addRow("%s: ticked, was %s", answer.name, start)
                << 1 << answer.action << before << true;
            QTest::addRow("%s: ticked and cleared, was %s", answer.name, start)
                << 2 << answer.action << before << false;
            QTest::addRow("%s: ticked again, was %s", answer.name, start)
                << 3 << answer.action << before << true;
        }
    }
}

void TestSameNamePrompt::applyToLaterFollowsTheCheckBox()
{
    QFETCH(int, clicks);
    QFETCH(UserAction, action);
    QFETCH(bool, before);
    QFETCH(bool, after);

    const User user([clicks, action](QMessageBox *box) {
        for (int i = 0; i < clicks; ++i)
            clickApplyBox(box);
        action(box);
    });
    bool applyToLater = before;
    VellPubDoc::showSameNameMsgBox("a", "b", applyToLater);
    QVERIFY(user.hasClosedTheBox());
    QCOMPARE(applyToLater, after);
}

void TestSameNamePrompt::applyToLaterIsWrittenAtOnce()
{
    bool applyToLater = false;
    QList<bool> seen;
    const User user([&applyToLater, &seen](QMessageBox *box) {
        clickApplyBox(box);
        seen.append(applyToLater);
        QTest::keyClick(box->checkBox(), Qt::Key_Space);
        seen.append(applyToLater);
        press(QMessageBox::Ok)(box);
    });
    VellPubDoc::showSameNameMsgBox("a", "b", applyToLater);
    QVERIFY(user.hasClosedTheBox());
    QCOMPARE(seen, QList<bool>({true, false}));
}

void TestSameNamePrompt::boxShowsTextsAndLabels_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("newName");

    QTest::newRow("plain") << "总图.dwg"
                           << "总图(1).dwg";
    QTest::newRow("empty new name") << "a.dwg" << QString();
    QTest::newRow("empty names") << QString() << QString();
    QTest::newRow("characters with a meaning elsewhere") << "<b>R&D</b> 100% %1 \\n.txt"
                                                         << "&amp; %2(1).txt";
    QTest::newRow("255 letters") << QString(255, QLatin1Char('m')) << QString(255, QChar(0x56fe));
}

void TestSameNamePrompt::boxShowsTextsAndLabels()
{
    QFETCH(QString, fileName);
    QFETCH(QString, newName);
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::red);
    const QIcon icon(pixmap);
    QApplication::setWindowIcon(icon);

    ShownBox shown;
    const User user([&shown](QMessageBox *box) {
        shown = read(box);
        press(QMessageBox::Discard)(box);
    });
    bool applyToLater = false;
    VellPubDoc::showSameNameMsgBox(fileName, newName, applyToLater);
    QApplication::setWindowIcon(QIcon());

    QVERIFY(user.hasClosedTheBox());
    QCOMPARE(shown.text, QString("此位置已存在同名文件：\n") + fileName);
    QCOMPARE(shown.informativeText,
             QString("新文件替换已存在的同名文件\n或\n保留原有文件并将其新文件重命名为") + newName
                 + QString("？"));
    QCOMPARE(shown.applyText, QString("为之后同名文件执行此操作"));
    QCOMPARE(shown.isApplyTicked, false);
    const QMap<int, QString> labels{
        {QMessageBox::Ok, "替换"},
        {QMessageBox::Save, "新增"},
        {QMessageBox::Discard, "跳过"},
        {QMessageBox::Cancel, "取消"},
    };
    QCOMPARE(shown.labels, labels);
    QCOMPARE(shown.defaultButton, int(QMessageBox::Ok));
    QCOMPARE(shown.windowIcon, icon.cacheKey());
    QVERIFY(shown.hasOwnWindowIcon);
    QCOMPARE(shown.title, QString());
    QVERIFY(shown.isModal);
    QVERIFY(!shown.hasParent);
}

void TestSameNamePrompt::nextBoxStartsUnticked()
{
    bool applyToLater = false;
    const User first([](QMessageBox *box) {
        clickApplyBox(box);
        press(QMessageBox::Save)(box);
    });
    VellPubDoc::showSameNameMsgBox("a", "b", applyToLater);
    QVERIFY(first.hasClosedTheBox());
    QCOMPARE(applyToLater, true);

    applyToLater = false;
    ShownBox shown;
    const User second([&shown](QMessageBox *box) {
        shown = read(box);
        press(QMessageBox::Ok)(box);
    });
    QCOMPARE(VellPubDoc::showSameNameMsgBox("a", "b", applyToLater), 1024);
    QVERIFY(second.hasClosedTheBox());
    QCOMPARE(shown.isApplyTicked, false);
    QCOMPARE(applyToLater, false);
}

void TestSameNamePrompt::boxIsGoneAfterwards()
{
    QPointer<QCheckBox> applyBox;
    const User user([&applyBox](QMessageBox *box) {
        applyBox = box->checkBox();
        press(QMessageBox::Ok)(box);
    });
    bool applyToLater = false;
    VellPubDoc::showSameNameMsgBox("a", "b", applyToLater);
    QVERIFY(user.hasClosedTheBox());
    QVERIFY(user.isBoxGone());
    QVERIFY(applyBox.isNull());
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

QTEST_MAIN(TestSameNamePrompt)

#include "tst_same_name_prompt.moc"
