#include <velldoc/documents/RemotePath.h>
#include <velldoc/output/DisplayWidth.h>
#include <velldoc/output/HumanText.h>
#include <velldoc/output/NaturalOrder.h>
#include <velldoc/output/Table.h>
#include <velldoc/session/ServiceTexts.h>
#include <velldoc/system/WindowsFileName.h>

#include <QCoreApplication>
#include <QTest>
#include <QTranslator>

using namespace velldoc;

class TestVelldocText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizesHaveAtMostThreeDigits_data();
    void sizesHaveAtMostThreeDigits();
    void durationsReadLikeAClock_data();
    void durationsReadLikeAClock();
    void timesAgoAreUnderstood();
    void widthsAreThoseOfTheTerminal_data();
    void widthsAreThoseOfTheTerminal();
    void elidedTextNeverExceedsItsWidth_data();
    void elidedTextNeverExceedsItsWidth();
    void namesCannotSteerTheTerminal();
    void tableColumnsLineUpWithWideCharacters();
    void tableFitsItsWidth();
    void tableWithoutWidthIsWhole();
    void lastColumnGoesOnInMoreLines();
    void emptyColumnIsDroppedFirst();
    void sentencesAreJoined();
    void messagesOfTheServiceAreTranslated_data();
    void messagesOfTheServiceAreTranslated();
    void linesAreWrapped_data();
    void linesAreWrapped();
    void numbersAreOrderedByTheirValue();
    void pathsAreRead_data();
    void pathsAreRead();
    void windowsHasNoFilesOfSomeNames_data();
    void windowsHasNoFilesOfSomeNames();
};

void TestVelldocText::sizesHaveAtMostThreeDigits_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << Q_INT64_C(0) << QStringLiteral("0 B");
    QTest::newRow("bytes") << Q_INT64_C(1023) << QStringLiteral("1023 B");
    QTest::newRow("one and a half") << Q_INT64_C(1536) << QStringLiteral("1.5 KiB");
    QTest::newRow("rounds up to the next unit")
        << Q_INT64_C(1'048'000) << QStringLiteral("1.0 MiB");
    QTest::newRow("above 4 GiB") << Q_INT64_C(5'368'709'120) << QStringLiteral("5.0 GiB");
    QTest::newRow("largest") << std::numeric_limits<qint64>::max() << QStringLiteral("8.0 EiB");
}

void TestVelldocText::sizesHaveAtMostThreeDigits()
{
    QFETCH(qint64, bytes);
    QTEST(sizeText(bytes), "text");
}

void TestVelldocText::durationsReadLikeAClock_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("seconds") << 7 << QStringLiteral("0:07");
    QTest::newRow("minutes") << 750 << QStringLiteral("12:30");
    QTest::newRow("hours") << 7500 << QStringLiteral("2:05:00");
}

void TestVelldocText::durationsReadLikeAClock()
{
    QFETCH(int, seconds);
    QTEST(durationText(std::chrono::seconds(seconds)), "text");
}

void TestVelldocText::timesAgoAreUnderstood()
{
    const QDateTime now = QDateTime::currentDateTime();
    QVERIFY(qAbs(timeFromText(QStringLiteral("2d")).secsTo(now) - qint64(2) * 86'400) < 60);
    QCOMPARE(timeFromText(QStringLiteral("2026-05-31")),
             QDateTime(QDate(2026, 5, 31), QTime(0, 0)));
    QVERIFY(!timeFromText(QStringLiteral("yesterday")).isValid());
    QVERIFY(!timeFromText(QString()).isValid());
}

void TestVelldocText::widthsAreThoseOfTheTerminal_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::newRow("ASCII") << QStringLiteral("plan.dwg") << 8;
    QTest::newRow("Chinese") << QStringLiteral("图纸") << 4;
    QTest::newRow("full-width punctuation") << QStringLiteral("（１）") << 6;
    QTest::newRow("composed letter") << QStringLiteral("é") << 1;
    QTest::newRow("decomposed letter") << QStringLiteral("e\u0301") << 1;
    QTest::newRow("pictograph beyond the first plane") << QStringLiteral("😀") << 2;
    QTest::newRow("Korean") << QStringLiteral("한글") << 4;
    QTest::newRow("zero-width joiner") << QStringLiteral("a\u200Db") << 2;
}

void TestVelldocText::widthsAreThoseOfTheTerminal()
{
    QFETCH(QString, text);
    QTEST(displayWidth(text), "width");
}

void TestVelldocText::elidedTextNeverExceedsItsWidth_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("shown");
    QTest::newRow("fits") << QStringLiteral("plan") << 4 << QStringLiteral("plan");
    QTest::newRow("cut") << QStringLiteral("plan.dwg") << 5 << QStringLiteral("plan…");
    QTest::newRow("half a wide character")
        << QStringLiteral("图纸.dwg") << 4 << QStringLiteral("图…");
}

void TestVelldocText::elidedTextNeverExceedsItsWidth()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QTEST(elided(text, width), "shown");
    QVERIFY(displayWidth(elided(text, width)) <= width);
}

void TestVelldocText::namesCannotSteerTheTerminal()
{
    QCOMPARE(printable(QStringLiteral("a\x1b[2Jb\r\n")), QStringLiteral("a\uFFFD[2Jb\uFFFD\uFFFD"));
    QCOMPARE(printable(QStringLiteral("a\u202Eb")), QStringLiteral("a\uFFFDb"));
    QCOMPARE(printable(QStringLiteral("图纸 😀")), QStringLiteral("图纸 😀"));
}

void TestVelldocText::tableColumnsLineUpWithWideCharacters()
{
    Table table;
    table.addColumn(QStringLiteral("Name"));
    table.addColumn(QStringLiteral("Size"), Qt::AlignRight);
    table.addRow({QStringLiteral("图纸"), QStringLiteral("1 B")});
    table.addRow({QStringLiteral("ab"), QStringLiteral("22 B")});
    QCOMPARE(table.lines(0),
             QStringList({QStringLiteral("Name  Size"), QStringLiteral("图纸   1 B"),
                          QStringLiteral("ab    22 B")}));
}

void TestVelldocText::tableFitsItsWidth()
{
    Table table;
    table.addColumn(QStringLiteral("Size"));
    table.addColumn(QStringLiteral("Name"), Qt::AlignLeft, Table::Fit::Shrinks);
    table.addRow({QStringLiteral("1 B"), QString(100, QChar(0x56FE))});
    const QStringList lines = table.lines(40);
    for (const QString &line : lines)
        QVERIFY2(displayWidth(line) <= 40, qPrintable(line));
    QVERIFY(lines.at(1).endsWith(QChar(0x2026)));
}

void TestVelldocText::tableWithoutWidthIsWhole()
{
    Table table;
    table.addColumn(QStringLiteral("Name"), Qt::AlignLeft, Table::Fit::Shrinks);
    const QString name(1000, QLatin1Char('x'));
    table.addRow({name});
    QCOMPARE(table.lines(0).at(1), name);
}

void TestVelldocText::lastColumnGoesOnInMoreLines()
{
    Table table;
    table.addColumn("Right");
    table.addColumn("Meaning", Qt::AlignLeft, Table::Fit::Wraps);
    table.addRow({"edit-self", "change what you have created"});
    table.addRow({"图", "upload"});
    QCOMPARE(table.lines(22),
             QStringList({"Right      Meaning", "edit-self  change what", "           you have",
                          "           created", "图         upload"}));
    QCOMPARE(table.lines(0).at(1), QString("edit-self  change what you have created"));
}

void TestVelldocText::emptyColumnIsDroppedFirst()
{
    Table table;
    table.addColumn(QStringLiteral("Stored"));
    table.addColumn(QStringLiteral("By"), Qt::AlignLeft, Table::Fit::Drops);
    table.addColumn(QStringLiteral("Remark"), Qt::AlignLeft, Table::Fit::Shrinks);
    table.addRow({QStringLiteral("2026-11-22 19:04"), QStringLiteral("anna"), QString()});
    QCOMPARE(table.lines(40).constFirst(), QStringLiteral("Stored            By    Remark"));
    QCOMPARE(table.lines(22),
             QStringList({QStringLiteral("Stored            By"),
                          QStringLiteral("2026-11-22 19:04  anna")}));
    QCOMPARE(table.lines(16).constFirst(), QStringLiteral("Stored"));
}

void TestVelldocText::sentencesAreJoined()
{
    QCOMPARE(joinedSentences({QStringLiteral("One."), QString(), QStringLiteral("Two.")}),
             QStringLiteral("One. Two."));
    QCOMPARE(joinedSentences({QStringLiteral("一。"), QStringLiteral("二。")}),
             QStringLiteral("一。二。"));
}

void TestVelldocText::messagesOfTheServiceAreTranslated_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("translated");
    QTest::newRow("fixed") << QStringLiteral("The access token is unknown.")
                           << QStringLiteral("<The access token is unknown.>");
    QTest::newRow("with a name") << QStringLiteral("There is no project tower.")
                                 << QStringLiteral("<There is no project tower.>");
    QTest::newRow("other") << QStringLiteral("There is no cake.")
                           << QStringLiteral("There is no cake.");
}

void TestVelldocText::messagesOfTheServiceAreTranslated()
{
    class Brackets : public QTranslator
    {
    public:
        QString translate(const char *, const char *text, const char *, int) const override
        {
            return QLatin1Char('<') + QString::fromLatin1(text) + QLatin1Char('>');
        }
        bool isEmpty() const override { return false; }
    } brackets;
    QCoreApplication::installTranslator(&brackets);
    QFETCH(QString, text);
    QTEST(translatedServiceText(text), "translated");
}

void TestVelldocText::linesAreWrapped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("fits") << QStringLiteral("one two") << QStringList{QStringLiteral("one two")};
    QTest::newRow("at blanks") << QStringLiteral("one two three four")
                               << QStringList{QStringLiteral("one two"), QStringLiteral("three"),
                                              QStringLiteral("four")};
    QTest::newRow("long word") << QStringLiteral("a incomprehensible b")
                               << QStringList{QStringLiteral("a"),
                                              QStringLiteral("incomprehensible"),
                                              QStringLiteral("b")};
    QTest::newRow("between Chinese characters")
        << QStringLiteral("图纸图纸图")
        << QStringList{QStringLiteral("图纸图纸"), QStringLiteral("图")};
    QTest::newRow("no line begins with a full stop")
        << QStringLiteral("图纸图纸。")
        << QStringList{QStringLiteral("图纸图"), QStringLiteral("纸。")};
    QTest::newRow("nothing") << QString() << QStringList{QString()};
}

void TestVelldocText::linesAreWrapped()
{
    QFETCH(QString, text);
    QTEST(wrapped(text, 8), "lines");
}

void TestVelldocText::numbersAreOrderedByTheirValue()
{
    const QStringList ordered{
        QStringLiteral("A"),
        QStringLiteral("b"),
        QStringLiteral("Level 2"),
        QStringLiteral("level 9 a"),
        QStringLiteral("Level 10"),
        QStringLiteral("Level 10b"),
        QStringLiteral("Level 123456789012345678901"),
        QStringLiteral("Level 123456789012345678902"),
        QStringLiteral("图"),
    };
    for (int i = 0; i < ordered.size(); ++i) {
        for (int j = 0; j < ordered.size(); ++j) {
            const int order = compareNaturally(ordered.at(i), ordered.at(j));
            QVERIFY2((order < 0) == (i < j) && (order == 0) == (i == j),
                     qPrintable(ordered.at(i) + QLatin1Char('|') + ordered.at(j)));
        }
    }
    QVERIFY(compareNaturally(QStringLiteral("a01"), QStringLiteral("a1")) != 0);
}

void TestVelldocText::pathsAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("written");
    QTest::newRow("top level") << QStringLiteral("/") << QString() << QStringList()
                               << QStringLiteral("/");
    QTest::newRow("names") << QStringLiteral("/A b/c#d") << QString()
                           << QStringList({QStringLiteral("A b"), QStringLiteral("c#d")})
                           << QStringLiteral("/A b/c#d");
    QTest::newRow("first slash left out")
        << QStringLiteral("A/b") << QString()
        << QStringList({QStringLiteral("A"), QStringLiteral("b")}) << QStringLiteral("/A/b");
    QTest::newRow("empty and dot segments")
        << QStringLiteral("//A/./b/") << QString()
        << QStringList({QStringLiteral("A"), QStringLiteral("b")}) << QStringLiteral("/A/b");
    QTest::newRow("back") << QStringLiteral("/A/../../b") << QString()
                          << QStringList(QStringLiteral("b")) << QStringLiteral("/b");
    QTest::newRow("identifier") << QStringLiteral("id:5f") << QStringLiteral("5f") << QStringList()
                                << QStringLiteral("id:5f");
    QTest::newRow("from an identifier on")
        << QStringLiteral("id:5f/A") << QStringLiteral("5f") << QStringList(QStringLiteral("A"))
        << QStringLiteral("id:5f/A");
    QTest::newRow("a name that looks like an identifier")
        << QStringLiteral("/id:5f") << QString() << QStringList(QStringLiteral("id:5f"))
        << QStringLiteral("/id:5f");
}

void TestVelldocText::pathsAreRead()
{
    QFETCH(QString, text);
    const RemotePath path = RemotePath::parse(text);
    QTEST(path.id(), "id");
    QTEST(path.names(), "names");
    QTEST(path.text(), "written");
}

void TestVelldocText::windowsHasNoFilesOfSomeNames_data()
{
    QTest::addColumn<bool>("isPossible");
    for (const char *const name : {"a.dwg", "图纸 R&D 100% #1 + 2", ".hidden", "a..b", "console",
                                   "COM", "COM10", "com1x.txt", "nul-1", "x nul"})
        QTest::newRow(name) << true;
    for (const char *const name :
         {"",    ".",          "..",      "a/b",  "a\\b",     "a:b",      "a*",
          "a?",  "say \"hi\"", "<a>",     "a|b",  "a\nb",     "a ",       "a.",
          "nul", "CON",        "Nul.txt", "com1", "LPT9.dwg", "aux .txt", "COM¹"})
        QTest::newRow(name) << false;
}

void TestVelldocText::windowsHasNoFilesOfSomeNames()
{
    QFETCH(bool, isPossible);
    QCOMPARE(isWindowsFileName(QString::fromUtf8(QTest::currentDataTag())), isPossible);
}

QTEST_GUILESS_MAIN(TestVelldocText)
#include "tst_velldoc_text.moc"
