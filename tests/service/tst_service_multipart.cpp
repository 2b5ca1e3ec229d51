#include <service/http/MultipartParser.h>

#include <QTest>

using namespace service;

//! The reader of forms, on bodies that arrive in pieces of every size.
class TestServiceMultipart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPartComesWhole_data();
    void everyPartComesWhole();
    void contentsThatLookLikeBoundaries_data();
    void contentsThatLookLikeBoundaries();
    void headersAreReadAsTheyAreWritten_data();
    void headersAreReadAsTheyAreWritten();
};

namespace {

//! Keeps the parts that come.
class Parts final : public MultipartParser::Receiver
{
public:
    void beginPart(const MultipartParser::Part &part) override { list.append({part, {}}); }
    void partContent(const char *data, qint64 length) override
    {
        list.last().second.append(data, static_cast<int>(length));
    }
    void endPart() override { ++ended; }

    QList<QPair<MultipartParser::Part, QByteArray>> list;
    int ended = 0;
};

//! The parts of a body whose bytes come \a step at a time.
Parts parse(const QByteArray &body, int step, const QByteArray &contentType)
{
    Parts parts;
    MultipartParser parser(contentType, parts);
    for (int at = 0; at < body.size(); at += step)
        parser.feed(body.constData() + at, qMin(step, body.size() - at));
    parser.finish();
    return parts;
}

QByteArray partOf(const QByteArray &name, const QByteArray &content)
{
    return "--B\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + content
        + "\r\n";
}

QStringList readAll(const QByteArray &body, int step)
{
    const Parts parts = parse(body, step, "multipart/form-data; boundary=B");
    QStringList texts;
    for (const auto &part : parts.list)
        texts.append(part.first.name + QLatin1Char('=') + QString::fromLatin1(part.second));
    return parts.ended == texts.size() ? texts : QStringList();
}

} // namespace

void TestServiceMultipart::everyPartComesWhole_data()
{
    QTest::addColumn<int>("step");
    for (const int step : {1, 2, 3, 7, 64, 100000})
        QTest::newRow(qPrintable(QString("%1 bytes at a time").arg(step))) << step;
}

void TestServiceMultipart::everyPartComesWhole()
{
    QFETCH(int, step);
    const QByteArray body = "a preamble\r\n" + partOf("first", "one\r\ntwo") + partOf("empty", "")
        + partOf("last", "three") + "--B--\r\nan epilogue";
    QCOMPARE(readAll(body, step), QStringList({"first=one\r\ntwo", "empty=", "last=three"}));
}

void TestServiceMultipart::contentsThatLookLikeBoundaries_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("line break at the end") << QByteArray("x\r\n");
    QTest::newRow("half a boundary") << QByteArray("x\r\n-");
    QTest::newRow("dashes") << QByteArray("\r\n--");
    QTest::newRow("boundary in a line") << QByteArray("x --B y");
    QTest::newRow("other case") << QByteArray("x\r\n--b\r\n");
    QTest::newRow("line feed only") << QByteArray("x\n--B\n");
    QTest::newRow("two carriage returns") << QByteArray("x\r\r\n");
    QTest::newRow("zeros") << QByteArray(300, '\0');
}

void TestServiceMultipart::contentsThatLookLikeBoundaries()
{
    QFETCH(QByteArray, content);
    for (const int step : {1, 3, 1000})
        QCOMPARE(readAll(partOf("f", content) + "--B--", step),
                 QStringList{QString("f=") + QString::fromLatin1(content)});
}

void TestServiceMultipart::headersAreReadAsTheyAreWritten_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("fileName");
    const auto row = [](const char *title, const char *header, const QString &name,
                        const QString &file) {
        QTest::newRow(title) << QByteArray(header) << name << file;
    };
    row("usual", "Content-Disposition: form-data; name=\"n\"; filename=\"f.txt\"", "n", "f.txt");
    row("lower case", "content-disposition: form-data; name=\"n\"", "n", QString());
    row("without quotes", "Content-Disposition: form-data; name=n; filename=f", "n", "f");
    row("file name first", "Content-Disposition: form-data; filename=\"f\"; name=\"n\"", "n", "f");
    row("semicolon inside", "Content-Disposition: form-data; name=\"a;b\"; filename=\"c; name=d\"",
        "a;b", "c; name=d");
    row("escaped quote", R"(Content-Disposition: form-data; name="n"; filename="a\"b")", "n",
        "a\"b");
    row("UTF-8", "Content-Disposition: form-data; name=\"n\"; filename=\"\xe5\x9b\xbe.dwg\"", "n",
        "图.dwg");
}

void TestServiceMultipart::headersAreReadAsTheyAreWritten()
{
    QFETCH(QByteArray, header);
    QFETCH(QString, name);
    QFETCH(QString, fileName);
    const Parts parts = parse("--B\r\nContent-Type: text/plain\r\n" + header + "\r\n\r\nx\r\n--B--",
                              5, "multipart/form-data; boundary=\"B\"");
    QCOMPARE(parts.list.size(), 1);
    QCOMPARE(parts.list.first().first.name, name);
    QCOMPARE(parts.list.first().first.fileName, fileName);
}

QTEST_GUILESS_MAIN(TestServiceMultipart)
#include "tst_service_multipart.moc"
