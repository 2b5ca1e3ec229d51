#include <operations/VellError.h>

#include <QTest>

using Kind = VellError::Kind;
using Reason = NetworkFailure::Reason;
Q_DECLARE_METATYPE(VellError::Kind)
Q_DECLARE_METATYPE(NetworkFailure::Reason)

// What a client learns of a failed request.
class TestClientErrors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aReasonGivesTheKind_data();
    void aReasonGivesTheKind();
    void aStatusGivesTheKind_data();
    void aStatusGivesTheKind();
    void everyKindHasASentence();
    void whatMayPassIsTemporary();
    void theWordsOfTheServiceAreKept();
    void nothingIsNoError();
};

namespace {

const QList<Kind> temporaryKinds{Kind::Offline, Kind::TimedOut, Kind::Busy, Kind::ServiceFailed,
                                 Kind::Unclear};

} // namespace

void TestClientErrors::aReasonGivesTheKind_data()
{
    QTest::addColumn<Reason>("reason");
    QTest::addColumn<Kind>("kind");
    QTest::newRow("name") << Reason::NameNotFound << Kind::Offline;
    QTest::newRow("refused") << Reason::ConnectionRefused << Kind::Offline;
    QTest::newRow("lost") << Reason::ConnectionLost << Kind::Offline;
    QTest::newRow("gateway") << Reason::GatewayFailed << Kind::Offline;
    QTest::newRow("time-out") << Reason::TimedOut << Kind::TimedOut;
    QTest::newRow("certificate") << Reason::CertificateExpired << Kind::Certificate;
    QTest::newRow("own certificate") << Reason::ClientCertificateNeeded << Kind::Certificate;
    QTest::newRow("no TLS") << Reason::NoTls << Kind::Certificate;
    QTest::newRow("proxy") << Reason::ProxyLoginNeeded << Kind::Proxy;
    QTest::newRow("large body") << Reason::BodyTooLarge << Kind::TooLarge;
    QTest::newRow("redirect") << Reason::RedirectRefused << Kind::BadAddress;
}

void TestClientErrors::aReasonGivesTheKind()
{
    QFETCH(Reason, reason);
    QFETCH(Kind, kind);
    NetworkFailure failure;
    failure.error = QNetworkReply::UnknownNetworkError;
    failure.reason = reason;
    failure.httpStatus = 407; // a reason counts more than a status
    QCOMPARE(VellError::of(failure).kind, kind);
}

void TestClientErrors::aStatusGivesTheKind_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<Kind>("kind");
    QTest::newRow("none") << 0 << Kind::Offline;
    QTest::newRow("200, cut short") << 200 << Kind::Offline;
    QTest::newRow("400") << 400 << Kind::Refused;
    QTest::newRow("401") << 401 << Kind::NotSignedIn;
    QTest::newRow("403") << 403 << Kind::NotAllowed;
    QTest::newRow("404") << 404 << Kind::NotFound;
    QTest::newRow("408") << 408 << Kind::TimedOut;
    QTest::newRow("409") << 409 << Kind::ChangedMeanwhile;
    QTest::newRow("410") << 410 << Kind::NotFound;
    QTest::newRow("412") << 412 << Kind::ChangedMeanwhile;
    QTest::newRow("413") << 413 << Kind::TooLarge;
    QTest::newRow("422") << 422 << Kind::Refused;
    QTest::newRow("429") << 429 << Kind::Busy;
    QTest::newRow("500") << 500 << Kind::ServiceFailed;
    QTest::newRow("503") << 503 << Kind::Busy;
    QTest::newRow("507") << 507 << Kind::NoRoom;
}

void TestClientErrors::aStatusGivesTheKind()
{
    QFETCH(int, status);
    QFETCH(Kind, kind);
    NetworkFailure failure;
    failure.error = QNetworkReply::UnknownServerError;
    failure.httpStatus = status;
    const VellError error = VellError::of(failure);
    QCOMPARE(error.kind, kind);
    QCOMPARE(error.httpStatus, status);
}

void TestClientErrors::everyKindHasASentence()
{
    for (int kind = int(Kind::None) + 1; kind <= int(Kind::Unclear); ++kind) {
        const QString text = VellError::of(Kind(kind)).text;
        QVERIFY2(text.endsWith(QLatin1Char('.')), qPrintable(QString::number(kind)));
    }
}

void TestClientErrors::whatMayPassIsTemporary()
{
    for (int kind = int(Kind::None); kind <= int(Kind::Unclear); ++kind)
        QCOMPARE(VellError::of(Kind(kind)).isTemporary(), temporaryKinds.contains(Kind(kind)));
}

void TestClientErrors::theWordsOfTheServiceAreKept()
{
    NetworkFailure failure;
    failure.httpStatus = 403;
    failure.message = QStringLiteral("only editors may");
    QCOMPARE(VellError::of(failure).detail, QStringLiteral("only editors may"));
    failure.error = QNetworkReply::OperationCanceledError;
    QCOMPARE(VellError::of(failure).kind, Kind::Cancelled);
}

void TestClientErrors::nothingIsNoError()
{
    QVERIFY(!VellError());
    QVERIFY(bool(VellError::cancelled()));
    QCOMPARE(VellError().text, QString());
}

QTEST_GUILESS_MAIN(TestClientErrors)
#include "tst_client_errors.moc"
