#include <service/ServiceFixture.h>

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

//! The written contract: every path and verb in it is there.
class TestServiceContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyOperationExists_data();
    void everyOperationExists();
};

void TestServiceContract::everyOperationExists_data()
{
    QTest::addColumn<QByteArray>("verb");
    QTest::addColumn<QString>("path");
    QFile contract(QStringLiteral(VELL_SERVICE_CONTRACT));
    QVERIFY(contract.open(QIODevice::ReadOnly));
    const QRegularExpression pathLine(QStringLiteral("^  /(\\S+):$"));
    const QRegularExpression verbLine(QStringLiteral("^    (get|put|post|delete):$"));
    QString path;
    while (!contract.atEnd()) {
        const QString line = QString::fromUtf8(contract.readLine()).remove(QLatin1Char('\n'));
        const QRegularExpressionMatch newPath = pathLine.match(line);
        const QRegularExpressionMatch verb = verbLine.match(line);
        if (newPath.hasMatch())
            path = newPath.captured(1);
        if (verb.hasMatch()) {
            QTest::newRow(qPrintable(verb.captured(1) + QLatin1Char(' ') + path))
                << verb.captured(1).toUpper().toLatin1() << path;
        }
    }
}

void TestServiceContract::everyOperationExists()
{
    QFETCH(QByteArray, verb);
    QFETCH(QString, path);
    ServiceFixture fixture;
    path.replace(QRegularExpression(QStringLiteral("\\{\\w+\\}")), QStringLiteral("x"));
    const HttpAnswer answer = fixture.client.send(verb, path);
    QVERIFY(answer.status != 405);
    QVERIFY2(!answer.errorText().contains(QStringLiteral("no such path")), answer.body.constData());
}

QTEST_GUILESS_MAIN(TestServiceContract)
#include "tst_service_contract.moc"
