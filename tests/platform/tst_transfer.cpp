#include <VellNetwork/engine/Transfer.h>

#include <QCoreApplication>
#include <QTest>

#include <memory>

namespace {

//! Counts the news of a transfer.
class Receiver : public QObject
{
public:
    int newsCount = 0;

    bool event(QEvent *event) override
    {
        if (event->type() != Transfer::newsType())
            return QObject::event(event);
        ++newsCount;
        return true;
    }
};

} // namespace

//! What passes between the thread that runs a request and its reply.
class TestTransfer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newsIsTakenOnce();
    void nothingIsPostedOnceTheEndHasBeenTaken();
    void nothingIsPostedAfterDetaching();
};

void TestTransfer::newsIsTakenOnce()
{
    Receiver receiver;
    Transfer transfer({}, &receiver);
    transfer.addData("ab", 2);
    transfer.announce();
    transfer.addData("cd", 2);
    transfer.announce();
    QCoreApplication::sendPostedEvents(&receiver);
    QCOMPARE(receiver.newsCount, 1);
    QCOMPARE(transfer.take(100).data, QByteArray("abcd"));
    QVERIFY(transfer.take(100).data.isEmpty());
}

// The thread that runs the transfer can be held up between the end and its announcement. By then an earlier event may have
// led the receiver to the end, and the receiver may be gone.
void TestTransfer::nothingIsPostedOnceTheEndHasBeenTaken()
{
    auto receiver = std::make_unique<Receiver>();
    Transfer transfer({}, receiver.get());
    transfer.setHead({});
    transfer.announce();
    transfer.setEnd({});
    QVERIFY(transfer.take(0).end.has_value());
    QCoreApplication::sendPostedEvents(receiver.get());
    receiver->newsCount = 0;
    transfer.announce();
    QCoreApplication::sendPostedEvents(receiver.get());
    QCOMPARE(receiver->newsCount, 0);
}

void TestTransfer::nothingIsPostedAfterDetaching()
{
    Receiver receiver;
    Transfer transfer({}, &receiver);
    transfer.detach();
    transfer.setEnd({});
    transfer.announce();
    QCoreApplication::sendPostedEvents(&receiver);
    QCOMPARE(receiver.newsCount, 0);
}

QTEST_GUILESS_MAIN(TestTransfer)
#include "tst_transfer.moc"
