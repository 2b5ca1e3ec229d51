#include <service/ServiceFixture.h>
#include <support/ServiceProcess.h>

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

//! What the program needs for its work it needs once, not for each client that was ever connected.
class TestServiceMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void largeListsDoNotAddUpOverConnections();

private:
    //! Of the program's own, without the mapped database, which its connections share.
    static qint64 bytesOf(const ServiceProcess &process);
};

qint64 TestServiceMemory::bytesOf(const ServiceProcess &process)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process.processId()));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QRegularExpression line(QStringLiteral("RssAnon:\\s+(\\d+) kB"));
    return line.match(QString::fromLatin1(status.readAll())).captured(1).toLongLong() * 1024;
}

void TestServiceMemory::largeListsDoNotAddUpOverConnections()
{
    constexpr int Documents = 1000;
    constexpr int Connections = 24;
    const QTemporaryDir folder;
    ServiceProcess process(folder.path());
    QVERIFY(process.start());
    HttpClient maker(process.baseApi());
    const QString path = ServiceFixture::projectPath(QStringLiteral("documents"));
    for (int i = 0; i < Documents; ++i) {
        const HttpAnswer answer =
            maker.post(path,
                       {{QStringLiteral("name"), QStringLiteral("n%1").arg(i)},
                        {QStringLiteral("type"), QStringLiteral("dir")},
                        {QStringLiteral("remark"), QString(4000, QLatin1Char('r'))}});
        QVERIFY2(answer.isSuccess(), qPrintable(answer.errorText()));
    }

    const qint64 before = bytesOf(process);
    const auto growthAfterList = [&] {
        HttpClient client(process.baseApi());
        const HttpAnswer answer = client.get(path);
        return answer.body.size() > Documents * 4000 ? bytesOf(process) - before : -1;
    };
    const qint64 first = growthAfterList();
    QVERIFY(first > 0);
    qint64 last = 0;
    for (int i = 0; i < Connections; ++i)
        last = growthAfterList();
    QVERIFY2(
        last < 8 * first,
        qPrintable(
            QStringLiteral("%1 bytes after the first, %2 after the last").arg(first).arg(last)));
}

QTEST_GUILESS_MAIN(TestServiceMemory)
#include "tst_service_memory.moc"
