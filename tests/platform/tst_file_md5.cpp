#include <VellPublicFun/VellPub.h>

#include <QCryptographicHash>
#include <QTemporaryDir>
#include <QtTest>

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

private:
    QString write(const QByteArray &content, const QString &name = QStringLiteral("file"));

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
    QTest::newRow("missing") << m_folder.filePath(QStringLiteral("missing"));
    QTest::newRow("a folder") << m_folder.path();
    QTest::newRow("below a file") << write("x") + QStringLiteral("/y");
#ifdef Q_OS_LINUX
    // Opens, and fails to be read.
    QTest::newRow("a read error") << QStringLiteral("/proc/self/mem");
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
                 QStringLiteral("900150983cd24fb0d6963f7d28e17f72"));
    }
}

QTEST_GUILESS_MAIN(TestFileMd5)

#include "tst_file_md5.moc"
