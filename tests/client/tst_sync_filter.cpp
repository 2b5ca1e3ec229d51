#include <sync/SyncFilter.h>

#include <QTest>

class TestSyncFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void patterns_data();
    void patterns();
    void includedFilesOnly();
};

void TestSyncFilter::patterns_data()
{
    QTest::addColumn<QString>("patterns"); // separated by spaces
    QTest::addColumn<QString>("path"); // with "/" at its end a folder
    QTest::addColumn<bool>("isExcluded");
    QTest::newRow("no pattern") << ""
                                << "a.txt" << false;
    QTest::newRow("a name") << "a.txt"
                            << "a.txt" << true;
    QTest::newRow("a name at any depth") << "a.txt"
                                         << "b/c/a.txt" << true;
    QTest::newRow("part of a name") << "a.txt"
                                    << "aa.txt" << false;
    QTest::newRow("a suffix") << "*.tmp"
                              << "b/x.tmp" << true;
    QTest::newRow("another suffix") << "*.tmp"
                                    << "b/x.tmp2" << false;
    QTest::newRow("a dot is a dot") << "a.b"
                                    << "aXb" << false;
    QTest::newRow("one character") << "a?c"
                                   << "abc" << true;
    QTest::newRow("a set") << "a[0-9].txt"
                           << "a7.txt" << true;
    QTest::newRow("not of a set") << "a[!0-9].txt"
                                  << "a7.txt" << false;
    QTest::newRow("a bracket alone") << "a[.txt"
                                     << "a[.txt" << true;
    QTest::newRow("a path") << "b/*.txt"
                            << "b/x.txt" << true;
    QTest::newRow("a path is from the root") << "b/*.txt"
                                             << "a/b/x.txt" << false;
    QTest::newRow("a star is one level") << "b/*.txt"
                                         << "b/c/x.txt" << false;
    QTest::newRow("two stars are all levels") << "b/**/*.txt"
                                              << "b/c/d/x.txt" << true;
    QTest::newRow("two stars are no level") << "b/**/*.txt"
                                            << "b/x.txt" << true;
    QTest::newRow("everything below") << "b/**"
                                      << "b/c/x.txt" << true;
    QTest::newRow("a name in the root") << "/a.txt"
                                        << "a.txt" << true;
    QTest::newRow("a name in the root only") << "/a.txt"
                                             << "b/a.txt" << false;
    QTest::newRow("a folder") << "build/"
                              << "x/build/" << true;
    QTest::newRow("a folder is no file") << "build/"
                                         << "build" << false;
    QTest::newRow("taken back") << "*.txt !keep.txt"
                                << "keep.txt" << false;
    QTest::newRow("the last one counts") << "!keep.txt *.txt"
                                         << "keep.txt" << true;
    QTest::newRow("names with special characters") << "*(1)+$.txt"
                                                   << "x(1)+$.txt" << true;
    QTest::newRow("a name with a line break") << "*.txt"
                                              << "a\nb.txt" << true;
}

void TestSyncFilter::patterns()
{
    QFETCH(QString, patterns);
    QFETCH(QString, path);
    QFETCH(bool, isExcluded);
    const SyncFilter filter({}, patterns.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (path.endsWith(QLatin1Char('/')))
        QCOMPARE(filter.excludesFolder(path.chopped(1)), isExcluded);
    else
        QCOMPARE(filter.excludesFile(path), isExcluded);
}

void TestSyncFilter::includedFilesOnly()
{
    const SyncFilter filter({QStringLiteral("*.dwg"), QStringLiteral("docs/**")},
                            {QStringLiteral("old*")});
    QVERIFY(!filter.excludesFile(QStringLiteral("a/plan.dwg")));
    QVERIFY(!filter.excludesFile(QStringLiteral("docs/a/b.txt")));
    QVERIFY(filter.excludesFile(QStringLiteral("a/plan.txt")));
    QVERIFY(filter.excludesFile(QStringLiteral("a/old.dwg")));
    QVERIFY(!filter.excludesFolder(QStringLiteral("a")));
    QVERIFY(filter.excludesFolder(QStringLiteral("old things")));
}

QTEST_APPLESS_MAIN(TestSyncFilter)
#include "tst_sync_filter.moc"
