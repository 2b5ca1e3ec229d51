#include <document_model/DocumentJson.h>

#include <VellPublicFun/VellPub.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace VellPubDoc;

namespace {

QJsonObject parsed(const char *json)
{
    QJsonParseError error{};
    QJsonObject object = QJsonDocument::fromJson(QByteArray(json), &error).object();
    if (error.error != QJsonParseError::NoError)
        qFatal("the test's JSON is broken: %s", json);
    return object;
}

//! A record in which no field has the value that any reading gives.
VellDocument filledRecord()
{
    VellDocument doc;
    const QString old = "old";
    for (QString *text :
         {&doc._id, &doc.name, &doc.parentId, &doc.documentId, &doc.hostId, &doc.category,
          &doc.projectId, &doc.type, &doc.status, &doc.fileId, &doc.filePath, &doc.suffix, &doc.pwd,
          &doc.previewId, &doc.remark, &doc.updatedBy, &doc.createdBy})
        *text = old;
    doc.hostType = doc.order = doc.recycle = 77;
    doc.favorite = true;
    doc.fileSize = 77;
    const QDateTime time(QDate(2001, 2, 3), QTime(4, 5), Qt::UTC);
    doc.downloadTime = doc.updatedAt = doc.createdAt = doc.historyUpdatedAt = time;
    doc.auths.insert(old, true);
    doc.children.append(VellDocument());
    doc.codeList.append(VellDocumentChange::EntityLinks);
    doc.entity.insert(old, {old});
    return doc;
}

//! Every field as text, for comparing two records as a whole.
QStringList fields(const VellDocument &doc)
{
    QStringList list{doc._id,       doc.name,      doc.parentId, doc.documentId, doc.hostId,
                     doc.category,  doc.projectId, doc.type,     doc.status,     doc.fileId,
                     doc.filePath,  doc.suffix,    doc.pwd,      doc.previewId,  doc.remark,
                     doc.updatedBy, doc.createdBy};
    for (const qint64 number :
         {qint64(doc.hostType), qint64(doc.order), qint64(doc.recycle), doc.fileSize,
          qint64(doc.favorite), qint64(doc.children.size()), qint64(doc.codeList.size())})
        list.append(QString::number(number));
    for (const QDateTime &time :
         {doc.downloadTime, doc.updatedAt, doc.createdAt, doc.historyUpdatedAt})
        list.append(VellPub::getQStringByDateTime(time));
    for (auto it = doc.auths.cbegin(); it != doc.auths.cend(); ++it)
        list.append(it.key() + QLatin1Char('=') + QString::number(int(it.value())));
    for (auto it = doc.entity.cbegin(); it != doc.entity.cend(); ++it)
        list.append(it.key() + QLatin1Char(':') + it.value().join(QLatin1Char(',')));
    return list;
}

using Reader = void (*)(const QJsonObject &, VellDocument &);
using Change = void (*)(VellDocument &);

} // namespace
Q_DECLARE_METATYPE(Reader)
Q_DECLARE_METATYPE(Change)

class TestDocumentJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKeyFillsItsField_data();
    void everyKeyFillsItsField();
    void anEmptyObjectOverwritesEveryFieldOfTheForm();
    void anEmptyHistoryEntryLeavesTheOtherFieldsAlone();
    void rightsAreMergedAndOnlyTheWordTrueGrants();
    void theFilesSuffixAlwaysWinsInHistories();
    void writingGivesTheClientsForm();
    void writingKeepsOtherKeysAndReplacesItsOwn();
    void sizesAreWrittenWrapped_data();
    void sizesAreWrittenWrapped();
    void theDownloadTimeIsTheTimeOfWriting();
};

// Each row: on top of an empty object's result, one key changes one field and nothing else.
void TestDocumentJson::everyKeyFillsItsField_data()
{
    QTest::addColumn<Reader>("read");
    QTest::addColumn<QJsonObject>("object");
    QTest::addColumn<Change>("change");

    const auto row = [](const char *name, Reader read, const char *json, Change change) {
        QTest::newRow(name) << read << parsed(json) << change;
    };
    const Reader doc = jsonToDocObject;
    const Reader history = jsonToDocHistoryObject;

#define ROW(reader, name, json, assignment)                                                        \
    row(#reader " " name, reader, json, [](VellDocument &d) { assignment; })
#define TEXT_ROW(reader, key, member)                                                              \
    ROW(reader, key, "{\"" key "\":\"x\"}", d.member = "x");                                       \
    ROW(reader, key " as a number counts as missing", "{\"" key "\":7}", Q_UNUSED(d))
#define FILE_TEXT_ROW(reader, key, member)                                                         \
    ROW(reader, "file." key, "{\"file\":{\"" key "\":\"x\"}}", d.member = "x")
#define TIME_ROW(reader, key, member)                                                              \
    ROW(reader, key, "{\"" key "\":\"2020-05-31T08:00:00.250Z\"}",                                 \
        d.member = QDateTime(QDate(2020, 5, 31), QTime(8, 0, 0, 250), Qt::UTC));                   \
    ROW(reader, key " unreadable", "{\"" key "\":\"yesterday\"}", Q_UNUSED(d))

    TEXT_ROW(doc, "_id", _id);
    TEXT_ROW(doc, "name", name);
    TEXT_ROW(doc, "parentId", parentId);
    TEXT_ROW(doc, "projectId", projectId);
    TEXT_ROW(doc, "category", category);
    TEXT_ROW(doc, "hostId", hostId);
    TEXT_ROW(doc, "documentId", documentId);
    TEXT_ROW(doc, "previewId", previewId);
    TEXT_ROW(doc, "pwd", pwd);
    TEXT_ROW(doc, "type", type);
    TEXT_ROW(doc, "remark", remark);
    TEXT_ROW(doc, "status", status);
    TEXT_ROW(doc, "createdBy", createdBy);
    TEXT_ROW(doc, "updatedBy", updatedBy);
    FILE_TEXT_ROW(doc, "fileId", fileId);
    FILE_TEXT_ROW(doc, "suffix", suffix);
    TIME_ROW(doc, "createdAt", createdAt);
    TIME_ROW(doc, "updatedAt", updatedAt);
    TIME_ROW(doc, "downloadTime", downloadTime);
    ROW(doc, "hostType", "{\"hostType\":3}", d.hostType = 3);
    ROW(doc, "hostType as digits in a text", "{\"hostType\":\"3\"}", Q_UNUSED(d));
    ROW(doc, "recycle", "{\"recycle\":2}", d.recycle = 2);
    ROW(doc, "order", "{\"order\":-4}", d.order = -4);
    ROW(doc, "order out of range", "{\"order\":3000000000}", Q_UNUSED(d));
    ROW(doc, "favorite", "{\"favorite\":true}", d.favorite = true);
    ROW(doc, "favorite as a text", "{\"favorite\":\"true\"}", Q_UNUSED(d));
    ROW(doc, "file that is no object", "{\"file\":\"x\"}", Q_UNUSED(d));
    ROW(doc, "fileId outside file", "{\"fileId\":\"x\",\"suffix\":\"x\"}", Q_UNUSED(d));
    ROW(doc, "file.fileSize", "{\"file\":{\"fileSize\":5000000000}}", d.fileSize = 5000000000);
    ROW(doc, "file.fileSize as digits in a text", "{\"file\":{\"fileSize\":\"5000000000\"}}",
        d.fileSize = 5000000000);
    ROW(doc, "file.fileSize unreadable", "{\"file\":{\"fileSize\":\"big\"}}", Q_UNUSED(d));
    ROW(doc, "entity", "{\"entity\":[{\"kind\":\"room\",\"ids\":[\"r1\",\"r2\"]}]}",
        d.entity.insert("room", QStringList({"r1", "r2"})));
    ROW(doc, "filePath is never the service's", "{\"filePath\":\"x\"}", Q_UNUSED(d));

    TEXT_ROW(history, "_id", _id);
    TEXT_ROW(history, "name", name);
    TEXT_ROW(history, "documentId", documentId);
    TEXT_ROW(history, "previewId", previewId);
    TEXT_ROW(history, "remark", remark);
    TEXT_ROW(history, "createdBy", createdBy);
    FILE_TEXT_ROW(history, "fileId", fileId);
    FILE_TEXT_ROW(history, "suffix", suffix);
    TIME_ROW(history, "createdAt", createdAt);
    TIME_ROW(history, "updatedAt", historyUpdatedAt);
    ROW(history, "file.fileSize", "{\"file\":{\"fileSize\":4096}}", d.fileSize = 4096);
    ROW(history, "file.fileSize beyond 32 bits", "{\"file\":{\"fileSize\":5000000000}}",
        Q_UNUSED(d));
    ROW(history, "file.fileSize as digits in a text", "{\"file\":{\"fileSize\":\"4096\"}}",
        Q_UNUSED(d));
    ROW(history, "negative file.fileSize", "{\"file\":{\"fileSize\":-1}}", d.fileSize = -1);
    ROW(history, "suffix at the top level", "{\"suffix\":\"x\"}", Q_UNUSED(d));
    ROW(history, "type, order and the rest",
        "{\"type\":\"file\",\"order\":3,\"parentId\":\"x\",\"updatedBy\":\"x\",\"favorite\":false,"
        "\"auths\":[{\"key\":\"edit\",\"value\":\"true\"}],\"entity\":[]}",
        Q_UNUSED(d));

#undef TIME_ROW
#undef FILE_TEXT_ROW
#undef TEXT_ROW
#undef ROW
}

void TestDocumentJson::everyKeyFillsItsField()
{
    QFETCH(Reader, read);
    QFETCH(QJsonObject, object);
    QFETCH(Change, change);

    VellDocument expected = filledRecord();
    read(QJsonObject(), expected);
    change(expected);
    VellDocument actual = filledRecord();
    read(object, actual);
    QCOMPARE(fields(actual), fields(expected));
}

void TestDocumentJson::anEmptyObjectOverwritesEveryFieldOfTheForm()
{
    VellDocument doc = filledRecord();
    jsonToDocObject(QJsonObject(), doc);

    VellDocument expected;
    expected.type.clear(); // "dir" is only a fresh record's
    expected.order = 0; // and so is -1
    const VellDocument filled = filledRecord();
    expected.filePath = filled.filePath;
    expected.children = filled.children;
    expected.codeList = filled.codeList;
    expected.historyUpdatedAt = filled.historyUpdatedAt;
    expected.auths = filled.auths;
    QCOMPARE(fields(doc), fields(expected));
}

void TestDocumentJson::anEmptyHistoryEntryLeavesTheOtherFieldsAlone()
{
    VellDocument doc = filledRecord();
    jsonToDocHistoryObject(QJsonObject(), doc);

    VellDocument expected = filledRecord();
    for (QString *text :
         {&expected._id, &expected.name, &expected.documentId, &expected.suffix,
          &expected.previewId, &expected.remark, &expected.fileId, &expected.createdBy})
        text->clear();
    expected.fileSize = 0;
    expected.createdAt = expected.historyUpdatedAt = QDateTime();
    QCOMPARE(fields(doc), fields(expected));
}

void TestDocumentJson::rightsAreMergedAndOnlyTheWordTrueGrants()
{
    VellDocument doc;
    doc.auths = {{"kept", true}, {"lost", true}};
    jsonToDocObject(parsed(R"({"auths":[
        {"key":"edit","value":"true"}, {"key":"edit","value":"yes"},
        {"key":"delete","value":"false"}, {"key":"delete","value":"true"},
        {"key":"upload","value":true}, {"key":"capital","value":"True"},
        {"key":"lost"}, "not an object", {"value":"true"}]})"),
                    doc);
    const QMap<QString, bool> expected{
        {"kept", true},     {"edit", false}, {"delete", true},  {"upload", false},
        {"capital", false}, {"lost", false}, {QString(), true},
    };
    QCOMPARE(doc.auths, expected);
}

void TestDocumentJson::theFilesSuffixAlwaysWinsInHistories()
{
    VellDocument doc;
    jsonToDocHistoryObject(parsed(R"({"suffix":"dwg","file":{"suffix":"pdf"}})"), doc);
    QCOMPARE(doc.suffix, QString("pdf"));
    jsonToDocHistoryObject(parsed(R"({"suffix":"dwg"})"), doc);
    QCOMPARE(doc.suffix, QString());
}

void TestDocumentJson::writingGivesTheClientsForm()
{
    const VellDocument doc = filledRecord();
    QJsonObject out;
    doc2JsonString(doc, out);
    QVERIFY(!out.take("downloadTime").toString().isEmpty());
    QCOMPARE(out, parsed(R"({"_id":"old","documentId":"old","name":"old",
        "createdAt":"2001-02-03T04:05:00.000Z","createdBy":"old",
        "updatedAt":"2001-02-03T04:05:00.000Z","updatedBy":"old",
        "fileId":"old","frequent":true,"pdfView":"old",
        "file":{"fileSize":77,"suffix":"old"}})"));

    VellDocument version;
    version._id = "v1";
    version.documentId = "d1";
    doc2JsonString(version, out);
    QCOMPARE(out.value("documentId").toString(), QString("v1"));
    QCOMPARE(out.value("createdAt"), QJsonValue(QString()));
    QCOMPARE(out.value("frequent"), QJsonValue(false));
}

void TestDocumentJson::writingKeepsOtherKeysAndReplacesItsOwn()
{
    QJsonObject out =
        parsed(R"({"mine":1,"name":"old","file":{"fileSize":1,"suffix":"x","more":2}})");
    VellDocument doc;
    doc.name = "new";
    doc2JsonString(doc, out);
    QCOMPARE(out.value("mine"), QJsonValue(1));
    QCOMPARE(out.value("name"), QJsonValue("new"));
    QCOMPARE(out.value("file").toObject(), parsed(R"({"fileSize":0,"suffix":""})"));
}

void TestDocumentJson::sizesAreWrittenWrapped_data()
{
    QTest::addColumn<qint64>("fileSize");
    QTest::addColumn<int>("written");

    QTest::newRow("small") << Q_INT64_C(4096) << 4096;
    QTest::newRow("largest") << Q_INT64_C(2147483647) << 2147483647;
    QTest::newRow("2 GiB") << Q_INT64_C(2147483648) << std::numeric_limits<int>::min();
    QTest::newRow("4 GiB") << Q_INT64_C(4294967296) << 0;
    QTest::newRow("5,000,000,000") << Q_INT64_C(5000000000) << 705032704;
}

void TestDocumentJson::sizesAreWrittenWrapped()
{
    QFETCH(qint64, fileSize);
    QFETCH(int, written);
    VellDocument doc;
    doc.fileSize = fileSize;
    QJsonObject out;
    doc2JsonString(doc, out);
    QCOMPARE(out.value("file").toObject().value("fileSize"), QJsonValue(written));
}

void TestDocumentJson::theDownloadTimeIsTheTimeOfWriting()
{
    VellDocument doc;
    doc.downloadTime = QDateTime(QDate(2001, 2, 3), QTime(4, 5), Qt::UTC);
    const auto written = [&doc] {
        QJsonObject out;
        doc2JsonString(doc, out);
        return VellPub::getDateTimeByQString(out.value("downloadTime").toString());
    };
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const QDateTime first = written();
    QVERIFY(before <= first && first <= QDateTime::currentDateTimeUtc());
    QTRY_VERIFY(written() > first);
}

QTEST_GUILESS_MAIN(TestDocumentJson)
#include "tst_document_json.moc"
