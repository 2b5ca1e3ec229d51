#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TestVelldocTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTextIsTranslated_data();
    void everyTextIsTranslated();
};

void TestVelldocTranslations::everyTextIsTranslated_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("options");
    QTest::newRow("Chinese") << QStringLiteral("velldoc_zh_CN.ts") << QStringList();
    QTest::newRow("English plurals")
        << QStringLiteral("velldoc_en.ts") << QStringList{QStringLiteral("-pluralonly")};
}

void TestVelldocTranslations::everyTextIsTranslated()
{
    QFETCH(QString, file);
    QFETCH(QStringList, options);
    const QString sources = QStringLiteral(VELLDOC_SOURCES);
    QTemporaryDir folder;
    const QString copy = folder.filePath(file);
    QVERIFY(QFile::copy(sources + QLatin1String("/translations/") + file, copy));
    QStringList arguments{QStringLiteral("-locations"), QStringLiteral("none"),
                          QStringLiteral("-I"), sources + QLatin1String("/..")};
    arguments += options;
    QDirIterator it(sources, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        arguments.append(it.next());
    // The sentences of the transport are shown to the user, too.
    if (options.isEmpty())
        arguments.append(QStringLiteral(VELLDOC_TRANSPORT_SOURCE));
    arguments += {QStringLiteral("-ts"), copy};
    QProcess lupdate;
    lupdate.start(QStringLiteral(VELLDOC_LUPDATE), arguments);
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

QTEST_GUILESS_MAIN(TestVelldocTranslations)
#include "tst_velldoc_translations.moc"
