#include "World.h"

#include <QTest>

class TestWorkflowNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hardNamesAreFoundAgain_data();
    void hardNamesAreFoundAgain();
    void impossibleNamesAreRefused_data();
    void impossibleNamesAreRefused();
    void theNextFreeNameIsFound();
};

void TestWorkflowNames::hardNamesAreFoundAgain_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names{
        "R&D 100% #1 + 图纸.dwg",
        "50%.txt",
        "50%25.txt",
        "a+b",
        "a b",
        "a=b&c=d",
        "quote\"s and {braces}",
        "semi;colon,comma",
        "caf\u00e9",
        "cafe\u0301",
        ".hidden",
        "-dash",
        "con?<>|*:",
        " leading blank",
        "\U0001F4D0 emoji",
        QString(255, QLatin1Char('x')),
        QString(85, QChar(0x56fe)), // 255 bytes
    };
    for (const QString &name : names)
        QTest::newRow(qPrintable(name.left(40))) << name;
}

void TestWorkflowNames::hardNamesAreFoundAgain()
{
    QFETCH(QString, name);
    World world;
    const VellDocument made = world.upload(name, "x");
    QCOMPARE(made.name, name);
    QCOMPARE(world.names(QString()), QStringList{name});
    QVERIFY(world.data.isDocNameExist(QString(), name, QString()));
    QVERIFY(!world.data.isDocNameExist(QString(), name + QLatin1Char('x'), QString()));
    VellDocumentConditon condition;
    condition.name = name;
    QString id;
    QVERIFY(world.data.getDocumentIdByName(condition, id));
    QCOMPARE(id, made._id);
}

void TestWorkflowNames::impossibleNamesAreRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString();
    QTest::newRow("one dot") << ".";
    QTest::newRow("two dots") << "..";
    QTest::newRow("path") << "a/b";
    QTest::newRow("way up") << "../a";
    QTest::newRow("too long") << QString(256, QLatin1Char('x'));
    QTest::newRow("line break") << "a\nb";
}

void TestWorkflowNames::impossibleNamesAreRefused()
{
    QFETCH(QString, name);
    World world;
    VellDocument folder;
    folder.name = name;
    QVERIFY(!world.data.createDocFolder(folder));
    QCOMPARE(world.lastFailure.httpStatus, 400);
    QVERIFY(!world.lastFailure.message.isEmpty());
    QCOMPARE(world.names(QString()), QStringList());
}

void TestWorkflowNames::theNextFreeNameIsFound()
{
    World world;
    const QString folder = world.makeFolder("folder");
    const auto validName = [&](QString *existing) {
        return VellDocumentData().getValidDocName(folder, "report.pdf", *existing, QString(), {});
    };
    QString existing;
    QCOMPARE(validName(&existing), QString("report.pdf"));
    QCOMPARE(existing, QString());
    const QString first = world.upload("report.pdf", "1", folder)._id;
    QCOMPARE(validName(&existing), QString("report(2).pdf"));
    QCOMPARE(existing, first);
    world.upload("report(2).pdf", "2", folder);
    QCOMPARE(validName(&existing), QString("report(3).pdf"));
}

QTEST_GUILESS_MAIN(TestWorkflowNames)
#include "tst_workflow_names.moc"
