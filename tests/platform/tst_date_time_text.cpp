#include <VellPublicFun/VellPub.h>

#include <QTest>

//! Date-times as the service writes them.
class TestDateTimeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryForm_data();
    void readsEveryForm();
    void refusesWhatIsNoDateTime_data();
    void refusesWhatIsNoDateTime();
    void writesUtcWithMilliseconds();
    void writesNothingForAnInvalidDateTime();
    void readingAndWritingAreInverses();
};

void TestDateTimeText::readsEveryForm_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *text, const char *expected) {
        QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(expected);
    };

    row("2020-05-31T08:00:00.000Z", "2020-05-31T08:00:00.000Z");
    row("2020-05-31T08:00:00Z", "2020-05-31T08:00:00.000Z");
    row("2020-05-31T08:00Z", "2020-05-31T08:00:00.000Z");
    row("2020-05-31T08Z", "2020-05-31T08:00:00.000Z");
    row("2020-05-31T08:00:00", "2020-05-31T08:00:00.000Z");
    row("2020-05-31T08:00", "2020-05-31T08:00:00.000Z");
    row("2020-05-31", "2020-05-31T00:00:00.000Z");
    row("2020-05-31 08:00:00", "2020-05-31T08:00:00.000Z");
    row("2020-05-31t08:00:00z", "2020-05-31T08:00:00.000Z");
    row("2020-05-31T08:00:00.5Z", "2020-05-31T08:00:00.500Z");
    row("2020-05-31T08:00:00,25Z", "2020-05-31T08:00:00.250Z");
    row("2020-05-31T08:00:00.123999Z", "2020-05-31T08:00:00.123Z");
    row("2020-05-31T08:00:00.9999999999999999999999Z", "2020-05-31T08:00:00.999Z");
    row("2020-05-31T08:00.5Z", "2020-05-31T08:00:30.000Z");
    row("2020-05-31T08.25Z", "2020-05-31T08:15:00.000Z");
    row("2020-05-31T16:00:00+08:00", "2020-05-31T08:00:00.000Z");
    row("2020-05-31T16:00:00+0800", "2020-05-31T08:00:00.000Z");
    row("2020-05-31T16:00:00+08", "2020-05-31T08:00:00.000Z");
    row("2020-05-31T16:00+08:00", "2020-05-31T08:00:00.000Z");
    row("2020-05-31T02:30:00-05:30", "2020-05-31T08:00:00.000Z");
    row("2020-06-01T04:00:00+20:00", "2020-05-31T08:00:00.000Z");
    row("2020-01-01T00:30:00+01:00", "2019-12-31T23:30:00.000Z");
    row("2020-05-31T08:00:00-00:00", "2020-05-31T08:00:00.000Z");
    row("20200531T080000Z", "2020-05-31T08:00:00.000Z");
    row("20200531T080000.250Z", "2020-05-31T08:00:00.250Z");
    row("20200531T160000+0800", "2020-05-31T08:00:00.000Z");
    row("20200531T0800Z", "2020-05-31T08:00:00.000Z");
    row("20200531T08", "2020-05-31T08:00:00.000Z");
    row("20200531", "2020-05-31T00:00:00.000Z");
    row("2020-02-29T12:00:00Z", "2020-02-29T12:00:00.000Z");
    row("2020-05-31T24:00:00Z", "2020-06-01T00:00:00.000Z");
    row("2020-12-31T24:00:00.000Z", "2021-01-01T00:00:00.000Z");
    row("2016-12-31T23:59:60Z", "2017-01-01T00:00:00.000Z");
    row("1969-12-31T23:59:59.999Z", "1969-12-31T23:59:59.999Z");
    row("0001-01-01T00:00:00Z", "0001-01-01T00:00:00.000Z");
    row("9999-12-31T23:59:59.999Z", "9999-12-31T23:59:59.999Z");
}

void TestDateTimeText::readsEveryForm()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);

    const QDateTime dateTime = VellPub::getDateTimeByQString(text);
    QVERIFY(dateTime.isValid());
    QCOMPARE(dateTime.timeSpec(), Qt::UTC);
    QCOMPARE(dateTime.toString(Qt::ISODateWithMs), expected);
}

void TestDateTimeText::refusesWhatIsNoDateTime_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](const char *text) { QTest::newRow(text) << QString::fromUtf8(text); };

    row("");
    row(" ");
    row("null");
    row("2020");
    row("2020-05");
    row("2020-5-31");
    row("2020-00-31T08:00:00Z");
    row("2020-13-31T08:00:00Z");
    row("2020-05-00T08:00:00Z");
    row("2020-05-32T08:00:00Z");
    row("2019-02-29T08:00:00Z");
    row("0000-01-01T00:00:00Z");
    row("2020-05-31T");
    row("2020-05-31T8:00:00Z");
    row("2020-05-31T25:00:00Z");
    row("2020-05-31T24:00:01Z");
    row("2020-05-31T24:00:00.001Z");
    row("2020-05-31T08:60:00Z");
    row("2020-05-31T08:00:60Z");
    row("2020-05-31T08:00:61Z");
    row("2020-05-31T08:00:00.Z");
    row("2020-05-31T08:00:00+24:00");
    row("2020-05-31T08:00:00+08:60");
    row("2020-05-31T08:00:00+8");
    row("2020-05-31T08:00:00ZZ");
    row("2020-05-31Z");
    row("2020-0531T08:00:00Z");
    row("202005-31T080000Z");
    row("2020-05-31T080000Z");
    row("20200531T08:00:00Z");
    row("2020-05-31T08:00:00Z\n");
    row("２０２０-05-31T08:00:00Z");
    row("Sun, 31 May 2020 08:00:00 GMT");
    row("1590912000");
}

void TestDateTimeText::refusesWhatIsNoDateTime()
{
    QFETCH(QString, text);

    QVERIFY(!VellPub::getDateTimeByQString(text).isValid());
}

void TestDateTimeText::writesUtcWithMilliseconds()
{
    const QDate day(2020, 5, 31);
    const QString expected = "2020-05-31T08:00:00.007Z";
    QCOMPARE(VellPub::getQStringByDateTime(QDateTime(day, QTime(8, 0, 0, 7), Qt::UTC)), expected);
    QCOMPARE(VellPub::getQStringByDateTime(
                 QDateTime(day, QTime(16, 0, 0, 7), Qt::OffsetFromUTC, 8 * 3600)),
             expected);
    const QDateTime local = QDateTime(day, QTime(8, 0, 0, 7), Qt::UTC).toLocalTime();
    QCOMPARE(VellPub::getQStringByDateTime(local), expected);
}

void TestDateTimeText::writesNothingForAnInvalidDateTime()
{
    QCOMPARE(VellPub::getQStringByDateTime(QDateTime()), QString());
    QCOMPARE(VellPub::getQStringByDateTime(QDateTime().addDays(1)), QString());
}

void TestDateTimeText::readingAndWritingAreInverses()
{
    // Steps of a prime number of milliseconds through more than a century.
    for (qint64 ms = -1000000000007; ms < 4000000000000; ms += 99999999977) {
        const QDateTime dateTime = QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC);
        const QString text = VellPub::getQStringByDateTime(dateTime);
        QCOMPARE(VellPub::getDateTimeByQString(text), dateTime);
        QCOMPARE(VellPub::getQStringByDateTime(VellPub::getDateTimeByQString(text)), text);
    }
}

QTEST_GUILESS_MAIN(TestDateTimeText)

#include "tst_date_time_text.moc"
