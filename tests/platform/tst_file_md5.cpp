#include <VellPublicFun/VellPub.h>

#include <QCryptographicHash>
#include <QFile>
#include <QFileDevice>
#include <QFileInfo>
#include <QIODevice>
#include <QTemporaryDir>
#include <QTest>

//! The MD5 of a file's content.
class TestFileMd5 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void giveThePublishedDigests_data();
    void giveThePublishedDigests();
    void sizesAroundTheBlockAreWhole_data();
    void sizesAroundTheBlockAreWhole();
    void whatCannotBeReadHasNone_data();
    void whatCannotBeReadHasNone();
    void unusualNamesAreFound();
    void progressIsToldBeforeEachMebibyte();
    void aFalseEndsTheReading();
    void aResultIsRemembered();
    void aFileOfTheFutureIsRemembered();
    void aChangedFileIsReadAgain_data();
    void aChangedFileIsReadAgain();
    void aFileChangedJustBeforeIsNotRemembered();

private:
    QString write(const QByteArray &content, const QString &name = "file");

    QTemporaryDir m_folder;
};

QString TestFileMd5::write(const QByteArray &content, const QString &name)
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    return file.fileName();
}

void TestFileMd5::giveThePublishedDigests_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("md5");
    const auto row = [](const char *name, const char *content, const char *md5) {
        QTest::newRow(name) << QByteArray(content) << QString::fromLatin1(md5);
    };

    // The test suite of RFC 1321.
    row("empty", "", "d41d8cd98f00b204e9800998ecf8427e");
    row("a", "a", "0cc175b9c0f1b6a831c399e269772661");
    row("abc", "abc", "900150983cd24fb0d6963f7d28e17f72");
    row("message digest", "message digest", "f96b697d7cb7938d525a2f31aaf161d0");
    row("alphabet", "abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b");
    row("letters and digits", "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
        "d174ab98d277d9f5a5611c2c9f419d9f");
    row("digits",
        "12345678901234567890123456789012345678901234567890123456789012345678901234567890",
        "57edf4a22be3c955ac49da2e2107b67a");
}

void TestFileMd5::giveThePublishedDigests()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, md5);

    QCOMPARE(VellPub::getFileMd5(write(content)), md5);
}

void TestFileMd5::sizesAroundTheBlockAreWhole_data()
{
    QTest::addColumn<int>("size");
    constexpr int Block = 1024 * 1024;
    for (const int size : {Block - 1, Block, Block + 1, 2 * Block, 3 * Block + 17})
        QTest::newRow(qPrintable(QString::number(size))) << size;
}

void TestFileMd5::sizesAroundTheBlockAreWhole()
{
    QFETCH(int, size);

    // No two blocks are equal, so that one read twice or left out changes the sum.
    QByteArray content;
    content.reserve(size + 16);
    for (int number = 0; content.size() < size; ++number)
        content += QByteArray::number(number);
    content.truncate(size);
    const QByteArray md5 = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
    QCOMPARE(VellPub::getFileMd5(write(content)), QString::fromLatin1(md5));
}

void TestFileMd5::whatCannotBeReadHasNone_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("no path") << QString();
    QTest::newRow("missing") << m_folder.filePath("missing");
    QTest::newRow("a folder") << m_folder.path();
    QTest::newRow("below a file") << write("x") + "/y";
#ifdef Q_OS_LINUX
    QTest::newRow("a device") << "/dev/null";
    // Opens, and fails to be read.
    QTest::newRow("a read error") << "/proc/self/mem";
#endif
}

void TestFileMd5::whatCannotBeReadHasNone()
{
    QFETCH(QString, path);

    QCOMPARE(VellPub::getFileMd5(path), QString());
}

void TestFileMd5::unusualNamesAreFound()
{
    for (const char *name : {"图纸 100% #1 + R&D.dwg", ".hidden", "-dash", "e\u0301"}) {
        QCOMPARE(VellPub::getFileMd5(write("abc", QString::fromUtf8(name))),
                 QString("900150983cd24fb0d6963f7d28e17f72"));
    }
}

namespace {

//! Makes \a path look as if it had been changed some time ago.
bool age(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite)
        && file.setFileTime(QDateTime::currentDateTime().addSecs(-60),
                            QFileDevice::FileModificationTime);
}

//! Whether the MD5 of \a path comes without reading it.
bool isRemembered(const QString &path)
{
    bool isRead = false;
    VellPub::getFileMd5(path, [&isRead](qint64) {
        isRead = true;
        return false;
    });
    return !isRead;
}

//! Hashes \a path until its times are old enough to tell a change.
bool remember(const QString &path)
{
    return QTest::qWaitFor([&path] {
        VellPub::getFileMd5(path, nullptr);
        return isRemembered(path);
    });
}

} // namespace

void TestFileMd5::progressIsToldBeforeEachMebibyte()
{
    constexpr qint64 MiB = 1048576;
    const QString path = write(QByteArray(int(2 * MiB + 5), 'a'));
    QList<qint64> told;
    const QString md5 = VellPub::getFileMd5(path, [&told](qint64 readBytes) {
        told.append(readBytes);
        return true;
    });
    QCOMPARE(md5, VellPub::getFileMd5(path));
    QCOMPARE(told, QList<qint64>({0, MiB, 2 * MiB, 2 * MiB + 5}));
}

void TestFileMd5::aFalseEndsTheReading()
{
    const QString path = write(QByteArray(5 * 1048576, 'a'));
    QVERIFY(age(path));
    int calls = 0;
    QCOMPARE(VellPub::getFileMd5(path, [&calls](qint64) { return ++calls < 3; }), QString());
    QCOMPARE(calls, 3);
    QVERIFY(!isRemembered(path));
}

void TestFileMd5::aResultIsRemembered()
{
    const QString path = write("content");
    QVERIFY(age(path));
    QVERIFY(!isRemembered(path));
    QVERIFY(remember(path));
    const QString md5 = "9a0364b9e99bb480dd25e1f0284c8555";
    QCOMPARE(VellPub::getFileMd5(path), md5);
    QCOMPARE(VellPub::getFileMd5(path, nullptr), md5);
}

void TestFileMd5::aFileOfTheFutureIsRemembered()
{
    const QString path = write("content");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(1),
                             QFileDevice::FileModificationTime));
    file.close();
    QVERIFY(remember(path));
}

void TestFileMd5::aChangedFileIsReadAgain_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("longer") << "longer";
    QTest::newRow("same size, another time") << "time";
    QTest::newRow("same size, and its old time again") << "entry";
    QTest::newRow("another file in its place") << "replaced";
}

void TestFileMd5::aChangedFileIsReadAgain()
{
    QFETCH(QString, change);
#ifndef Q_OS_LINUX
    if (change == QLatin1String("entry"))
        return; // only this system keeps a time that programs cannot set
#endif
    const QString path = write("content");
    QVERIFY(age(path));
    const QDateTime time = QFileInfo(path).lastModified();
    QVERIFY(remember(path));
    if (change == QLatin1String("replaced")) {
        const QString other = write("another", "other");
        QVERIFY(QFile::remove(path));
        QVERIFY(QFile::rename(other, path));
    } else {
        write(change == QLatin1String("longer") ? "content and more" : "CONTENT");
    }
    if (change == QLatin1String("entry")) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
    }
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray expected =
        QCryptographicHash::hash(file.readAll(), QCryptographicHash::Md5).toHex();
    QCOMPARE(VellPub::getFileMd5(path), QString::fromLatin1(expected));
}

void TestFileMd5::aFileChangedJustBeforeIsNotRemembered()
{
    const QString path = write("content", "fresh");
    VellPub::getFileMd5(path, nullptr);
    // A change in the same moment would leave no trace.
    QVERIFY(!isRemembered(path));
}

QTEST_GUILESS_MAIN(TestFileMd5)

#include "tst_file_md5.moc"
