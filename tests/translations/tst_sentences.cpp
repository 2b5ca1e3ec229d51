#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

// Sources in English: whether every sentence has its translation, and none is left over.
class TestSentences : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTextIsTranslated_data();
    void everyTextIsTranslated();
};

void TestSentences::everyTextIsTranslated_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("sources");
    QTest::addColumn<QStringList>("options");
    const QString velldoc = "apps/velldoc";
    // The sentences of the transport are shown to the user, too.
    QTest::newRow("velldoc, Chinese")
        << "apps/velldoc/translations/velldoc_zh_CN.ts"
        << QStringList{velldoc, "platform/VellNetwork/reply"} << QStringList();
    QTest::newRow("velldoc, English plurals") << "apps/velldoc/translations/velldoc_en.ts"
                                              << QStringList{velldoc} << QStringList{"-pluralonly"};
    const QString desktop = "apps/desktop";
    QTest::newRow("vell-desktop, Chinese")
        << "apps/desktop/translations/vell-desktop_zh_CN.ts"
        << QStringList{desktop, "platform/VellNetwork/reply"} << QStringList();
    QTest::newRow("vell-desktop, English plurals")
        << "apps/desktop/translations/vell-desktop_en.ts" << QStringList{desktop}
        << QStringList{"-pluralonly"};
    QTest::newRow("client layer, Chinese")
        << "client/translations/VellClient_zh_CN.ts" << QStringList{"client"} << QStringList();
}

void TestSentences::everyTextIsTranslated()
{
    QFETCH(QString, file);
    QFETCH(QStringList, sources);
    QFETCH(QStringList, options);
    const QDir root(QStringLiteral(VELL_SOURCE_ROOT));
    QTemporaryDir folder;
    const QString copy = folder.filePath("copy.ts");
    QVERIFY(QFile::copy(root.filePath(file), copy));
    QStringList arguments{"-locations", "none", "-I", root.filePath("apps")};
    arguments += options;
    for (const QString &source : qAsConst(sources)) {
        QDirIterator it(root.filePath(source), {"*.cpp", "*.h"}, QDir::Files,
                        QDirIterator::Subdirectories);
        while (it.hasNext())
            arguments.append(it.next());
    }
    arguments += {"-ts", copy};
    QProcess lupdate;
    lupdate.start(QStringLiteral(VELL_LUPDATE), arguments);
    QVERIFY(lupdate.waitForFinished());
    QCOMPARE(lupdate.exitCode(), 0);
    QFile updated(copy);
    QVERIFY(updated.open(QIODevice::ReadOnly));
    const QByteArray text = updated.readAll();
    QVERIFY(text.count("<source>") > 5);
    for (const char *const state : {"unfinished", "vanished", "obsolete"}) {
        const int at = text.indexOf(QByteArray("type=\"") + state);
        QVERIFY2(at < 0, text.mid(qMax(0, at - 200), 250).constData());
    }
}

QTEST_GUILESS_MAIN(TestSentences)
#include "tst_sentences.moc"
