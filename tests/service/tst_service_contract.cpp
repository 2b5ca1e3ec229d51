#include <service/api/Dispatcher.h>
#include <service/api/ServiceContext.h>

#include <QFile>
#include <QIODevice>
#include <QRegularExpression>
#include <QRegularExpressionMatch>
#include <QStringLiteral>
#include <QTemporaryDir>
#include <QTest>

using namespace service;

//! The written contract has the routes of the service, all of them and no others.
class TestServiceContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyRouteIsWrittenDown();
    void everyOperationIsARoute();

private:
    QStringList m_written; //!< "GET base-service/files/*"
    QStringList m_routes;
};

void TestServiceContract::initTestCase()
{
    QFile contract(QStringLiteral(VELL_SERVICE_CONTRACT));
    QVERIFY(contract.open(QIODevice::ReadOnly));
    const QRegularExpression pathLine("^  /(\\S+):$");
    const QRegularExpression methodLine("^    (get|head|put|post|delete|patch):$");
    const QRegularExpression parameter("\\{\\w+\\}");
    QString path;
    while (!contract.atEnd()) {
        const QString line = QString::fromUtf8(contract.readLine()).remove(QLatin1Char('\n'));
        const QRegularExpressionMatch newPath = pathLine.match(line);
        const QRegularExpressionMatch method = methodLine.match(line);
        if (newPath.hasMatch())
            path = newPath.captured(1).replace(parameter, "*");
        if (method.hasMatch())
            m_written.append(method.captured(1).toUpper() + QLatin1Char(' ') + path);
    }
    const QTemporaryDir folder;
    ServiceContext context(folder.path(), {}, 0, 0);
    const Dispatcher dispatcher(context);
    for (const Router::Route &route : dispatcher.router().routes()) {
        const QString tail = QLatin1Char(' ') + route.segments.join(QLatin1Char('/'));
        m_routes.append(QString::fromLatin1(route.method) + tail);
        if (route.hasHead)
            m_routes.append(QString("HEAD") + tail);
    }
    QVERIFY(m_written.size() > 40);
    QVERIFY(m_routes.size() > 40);
}

void TestServiceContract::everyRouteIsWrittenDown()
{
    for (const QString &route : qAsConst(m_routes))
        QVERIFY2(m_written.contains(route), qPrintable(route));
}

void TestServiceContract::everyOperationIsARoute()
{
    for (const QString &operation : qAsConst(m_written))
        QVERIFY2(m_routes.contains(operation), qPrintable(operation));
}

QTEST_GUILESS_MAIN(TestServiceContract)
#include "tst_service_contract.moc"
