#include "UploadTest.h"

#include <QMetaMethod>
#include <QMetaType>
#include <QTest>

// The methods of an upload job as clients find them by name.
class TestUploadMetaObject : public UploadTest
{
    Q_OBJECT

public Q_SLOTS:
    void takeDocument(const VellDocument &doc) { m_received.append(doc._id); }
    void takeProgress(qint64 bytes, qint64 total)
    {
        m_received.append(QString("%1/%2").arg(bytes).arg(total));
    }
    void takeError(int code) { m_received.append(QString::number(code)); }
    void takeEnd() { m_received.append("end"); }

private Q_SLOTS:
    void theNetworkErrorHasItsName();
    void methodsAreInOrder_data();
    void methodsAreInOrder();
    void signalsTravelQueuedBySignature();
    void signalsOfAnUploadTravelQueuedBySignature();

private:
    void connectQueued() const;

    QStringList m_received;
};

void TestUploadMetaObject::theNetworkErrorHasItsName()
{
    const int type = QMetaType::type("QNetworkReply::NetworkError");
    QVERIFY(type != QMetaType::UnknownType);
    QCOMPARE(QMetaType::sizeOf(type), 4);
    QVERIFY(QMetaType::typeFlags(type) & QMetaType::IsEnumeration);
}

void TestUploadMetaObject::methodsAreInOrder_data()
{
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QList<QByteArray>>("names");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("access");

    const auto row = [](const char *signature, const QList<QByteArray> &names,
                        QMetaMethod::MethodType type, QMetaMethod::Access access) {
        QTest::newRow(signature) << QByteArray(signature) << names << int(type) << int(access);
    };
    row("createDocumentFinish(VellDocument)", {"doc"}, QMetaMethod::Signal, QMetaMethod::Public);
    row("uploadProgress(qint64,qint64)", {"bytesReceived", "bytesTotal"}, QMetaMethod::Signal,
        QMetaMethod::Public);
    row("error(int)", {"code"}, QMetaMethod::Signal, QMetaMethod::Public);
    row("finishUpload()", {}, QMetaMethod::Signal, QMetaMethod::Public);
    row("uploadComplete(QByteArray)", {"content"}, QMetaMethod::Slot, QMetaMethod::Private);
}

void TestUploadMetaObject::methodsAreInOrder()
{
    QFETCH(QByteArray, signature);
    QFETCH(QList<QByteArray>, names);
    QFETCH(int, type);
    QFETCH(int, access);
    const QMetaObject &metaObject = AsyncCreateDocument::staticMetaObject;
    QCOMPARE(QByteArray(metaObject.className()), QByteArray("AsyncCreateDocument"));
    QCOMPARE(metaObject.methodCount() - metaObject.methodOffset(), 5);
    const int index = metaObject.indexOfMethod(signature.constData());
    QVERIFY(index >= 0);
    const QByteArrayList order{"createDocumentFinish", "uploadProgress", "error", "finishUpload",
                               "uploadComplete"};
    const QMetaMethod method = metaObject.method(index);
    QCOMPARE(index - metaObject.methodOffset(), order.indexOf(method.name()));
    QCOMPARE(method.parameterNames(), names);
    QCOMPARE(int(method.methodType()), type);
    QCOMPARE(int(method.access()), access);
}

void TestUploadMetaObject::connectQueued() const
{
    const std::pair<const char *, const char *> pairs[] = {
        {SIGNAL(createDocumentFinish(VellDocument)), SLOT(takeDocument(VellDocument))},
        {SIGNAL(uploadProgress(qint64, qint64)), SLOT(takeProgress(qint64, qint64))},
        {SIGNAL(error(int)), SLOT(takeError(int))},
        {SIGNAL(finishUpload()), SLOT(takeEnd())},
    };
    for (const auto &[signal, slot] : pairs)
        QVERIFY(connect(m_job.get(), signal, this, slot, Qt::QueuedConnection));
}

void TestUploadMetaObject::signalsTravelQueuedBySignature()
{
    m_received.clear();
    connectQueued();
    VellDocument doc;
    doc._id = "d1";
    Q_EMIT m_job->createDocumentFinish(doc);
    Q_EMIT m_job->uploadProgress(Q_INT64_C(5) << 30, Q_INT64_C(6) << 30);
    Q_EMIT m_job->error(QNetworkReply::TimeoutError);
    Q_EMIT m_job->finishUpload();
    QCOMPARE(m_received, QStringList());
    QTRY_COMPARE(m_received, QStringList({"d1", "5368709120/6442450944", "4", "end"}));
}

void TestUploadMetaObject::signalsOfAnUploadTravelQueuedBySignature()
{
    m_received.clear();
    connectQueued();
    start(largeFile());
    QTRY_VERIFY_WITH_TIMEOUT(m_received.contains("d1"), WaitMs);
    QCOMPARE(m_received.count("end"), 1);
    QVERIFY(!m_received.filter("/10485761").isEmpty());
}

QTEST_GUILESS_MAIN(TestUploadMetaObject)
#include "tst_upload_meta_object.moc"
