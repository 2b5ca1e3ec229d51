#include <VellNetwork/CFileUploadProxy.h>
#include <VellPublicFun/VellPub.h>

#include <QDir>
#include <QFile>
#include <QHttpMultiPart>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <windows.h>

// Local files as Windows has them, for the functions of the platform that open them.
class TestWindowsFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fileIsFound_data();
    void fileIsFound();
    void fileThatNobodyElseMayHaveIsNotRead();
    void fileThatOthersWriteIsRead();
    void fileThatIsBeingSentCannotBeRemoved();

private:
    QString write(const QString &path);
    //! Opens a file as another program may have done.
    static HANDLE open(const QString &path, DWORD access, DWORD sharing);
    static bool hasBody(const QString &path);

    QTemporaryDir m_folder;
};

QString TestWindowsFiles::write(const QString &path)
{
    const QString whole = m_folder.filePath(path);
    QDir().mkpath(QFileInfo(whole).path());
    QFile file(whole);
    if (!file.open(QIODevice::WriteOnly) || file.write("abc") != 3)
        qFatal("%s cannot be written", qPrintable(whole));
    return whole;
}

HANDLE TestWindowsFiles::open(const QString &path, DWORD access, DWORD sharing)
{
    const QString native = QDir::toNativeSeparators(path);
    return CreateFileW(reinterpret_cast<const wchar_t *>(native.utf16()), access, sharing, nullptr,
                       OPEN_EXISTING, 0, nullptr);
}

bool TestWindowsFiles::hasBody(const QString &path)
{
    QFile *opened = nullptr;
    const std::unique_ptr<QHttpMultiPart> body(
        CFileUploadProxy::getFileHttpMultiPart(&opened, path));
    const std::unique_ptr<QFile> file(opened);
    return body != nullptr;
}

void TestWindowsFiles::fileIsFound_data()
{
    QTest::addColumn<QString>("path");
    const QString plain = write("plain/图纸 100% #1 + R&D.dwg");
    QTest::newRow("drive and slashes") << plain;
    QTest::newRow("drive and backslashes") << QDir::toNativeSeparators(plain);
    QTest::newRow("in another case") << plain.toUpper();
    QTest::newRow("up and down") << QString(plain).replace(QLatin1String("plain/"),
                                                           QLatin1String("plain/../plain/./"));
    QTest::newRow("longer than 260 characters")
        << write(QString(100, QLatin1Char('d')) + QLatin1Char('/') + QString(100, QLatin1Char('e'))
                 + QLatin1Char('/') + QString(100, QChar(0x56fe)) + "/a.dwg");
}

void TestWindowsFiles::fileIsFound()
{
    QFETCH(QString, path);
    QCOMPARE(VellPub::getFileMd5(path), QString("900150983cd24fb0d6963f7d28e17f72"));
    QVERIFY(hasBody(path));
}

void TestWindowsFiles::fileThatNobodyElseMayHaveIsNotRead()
{
    const QString path = write("kept.dwg");
    const HANDLE other = open(path, GENERIC_READ, 0);
    QVERIFY(other != INVALID_HANDLE_VALUE);
    QCOMPARE(VellPub::getFileMd5(path), QString());
    QVERIFY(!hasBody(path));
    CloseHandle(other);
    QVERIFY(hasBody(path));
}

void TestWindowsFiles::fileThatOthersWriteIsRead()
{
    const QString path = write("shared.dwg");
    const HANDLE other = open(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    QVERIFY(other != INVALID_HANDLE_VALUE);
    QCOMPARE(VellPub::getFileMd5(path), QString("900150983cd24fb0d6963f7d28e17f72"));
    QVERIFY(hasBody(path));
    CloseHandle(other);
}

void TestWindowsFiles::fileThatIsBeingSentCannotBeRemoved()
{
    const QString path = write("sent.dwg");
    QFile *opened = nullptr;
    std::unique_ptr<QHttpMultiPart> body(CFileUploadProxy::getFileHttpMultiPart(&opened, path));
    std::unique_ptr<QFile> file(opened);
    QVERIFY(!QFile::remove(path));
    body.reset();
    file.reset();
    QVERIFY(QFile::remove(path));
}

QTEST_GUILESS_MAIN(TestWindowsFiles)
#include "tst_windows_files.moc"
