#include <file_types/FileTypes.h>
#include <file_types/SameNamePrompt.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDirIterator>
#include <QFile>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QTranslator>
#include <QXmlStreamReader>

namespace {

// Context and source text, so that a failing comparison names both.
using Texts = QMap<QString, QString>;

struct TranslationFile
{
    Texts finished; // "context: source" to its translation
    Texts unfinished; // the same for those that lrelease leaves out or a translator has not checked
    QString error;
};

void readMessage(QXmlStreamReader &xml, const QString &context, TranslationFile &file)
{
    QString source;
    QString translation;
    QString state;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            state = xml.attributes().value(QLatin1String("type")).toString();
            translation = xml.readElementText();
        } else {
            xml.skipCurrentElement();
        }
    }
    const bool isFinished = state.isEmpty() && !translation.isEmpty();
    Texts &texts = isFinished ? file.finished : file.unfinished;
    texts.insert(context + QString(": ") + source, translation);
}

TranslationFile readTranslationFile(const QString &path)
{
    TranslationFile result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        result.error = path + QString(": ") + file.errorString();
        return result;
    }
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText();
        else if (xml.name() == QLatin1String("message"))
            readMessage(xml, context, result);
    }
    if (xml.hasError())
        result.error = path + QString(": ") + xml.errorString();
    return result;
}

QString folder(const char *path)
{
    return QString::fromUtf8(path);
}

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void everyTextOfTheSourcesIsTranslated_data();
    void everyTextOfTheSourcesIsTranslated() const;
    void everyChineseTextIsGivenToTranslators() const;
    void categoriesAndFilterSpeakEnglish();
    void promptSpeaksEnglish();
    void textsAreChineseWithoutATranslation();

private:
    void loadEnglish();

    TranslationFile m_sources; // what lupdate finds in the sources of the library
    QTranslator m_english;
};

void TestTranslations::initTestCase()
{
    m_sources = readTranslationFile(folder(VELL_SOURCES_TS));
    QCOMPARE(m_sources.error, QString());
    QVERIFY(m_sources.unfinished.contains("QObject: 图纸"));
    QVERIFY(m_sources.unfinished.contains("QMessageBox: 替换"));
}

void TestTranslations::cleanup()
{
    QCoreApplication::removeTranslator(&m_english);
}

void TestTranslations::loadEnglish()
{
    QVERIFY(m_english.load("VellDocumentData_en.qm", folder(VELL_QM_FOLDER)));
    QVERIFY(QCoreApplication::installTranslator(&m_english));
}

void TestTranslations::everyTextOfTheSourcesIsTranslated_data()
{
    QTest::addColumn<QString>("path");
    QDirIterator files(folder(VELL_TS_FOLDER), {"*.ts"}, QDir::Files);
    while (files.hasNext()) {
        const QString path = files.next();
        QTest::newRow(qPrintable(files.fileName())) << path;
    }
}

void TestTranslations::everyTextOfTheSourcesIsTranslated() const
{
    QFETCH(QString, path);
    const TranslationFile file = readTranslationFile(path);
    QCOMPARE(file.error, QString());
    QCOMPARE(file.unfinished.keys(), QStringList());
    // Both ways: a text that has left the sources leaves the translation too.
    QCOMPARE(file.finished.keys(), m_sources.unfinished.keys());
}

void TestTranslations::everyChineseTextIsGivenToTranslators() const
{
    QStringList known;
    const QStringList keys = m_sources.unfinished.keys();
    for (const QString &key : keys)
        known.append(key.section(": ", 1));

    const QRegularExpression literal("\"((?:[^\"\\\\\\n]|\\\\.)*)\"");
    const QRegularExpression comment("^\\s*//");
    const QRegularExpression chinese(QStringLiteral("[\\x{3000}-\\x{9fff}\\x{ff00}-\\x{ffef}]"));
    QDirIterator files(folder(VELL_SOURCE_FOLDER), {"*.cpp", "*.h"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            if (comment.match(line).hasMatch())
                continue;
            QRegularExpressionMatchIterator match = literal.globalMatch(line);
            while (match.hasNext()) {
                const QString text = match.next().captured(1);
                const bool isGiven = !chinese.match(text).hasMatch() || known.contains(text);
                QVERIFY2(isGiven, qPrintable(files.fileName() + QString(": ") + text));
            }
        }
    }
}

void TestTranslations::categoriesAndFilterSpeakEnglish()
{
    loadEnglish();
    QCOMPARE(VellPubDoc::getFileTypeName("dwg"), QString("Drawings"));
    QCOMPARE(VellPubDoc::getFileTypeName("image"), QString("Pictures"));
    QCOMPARE(VellPubDoc::getFileTypeName("office"), QString("Documents"));
    QCOMPARE(VellPubDoc::getFileTypeName("video"), QString("Audio/Video"));
    QCOMPARE(VellPubDoc::getFileTypeName("other"), QString("Other"));
    QCOMPARE(VellPubDoc::getFileTypeName("anything"), QString("Other"));

    const QStringList filters = VellPubDoc::getNameFilters();
    QCOMPARE(filters.size(), 10);
    QCOMPARE(filters.at(0), QString("All types (*.*)"));
    QCOMPARE(filters.at(1), QString("Image files (*.png *.bmp *.jpg)"));
}

void TestTranslations::promptSpeaksEnglish()
{
    loadEnglish();
    QStringList shown;
    QTimer::singleShot(0, qApp, [&shown] {
        auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        shown << box->text() << box->informativeText() << box->checkBox()->text();
        for (const auto button :
             {QMessageBox::Ok, QMessageBox::Save, QMessageBox::Discard, QMessageBox::Cancel})
            shown << box->button(button)->text();
        QTest::keyClick(box, Qt::Key_Escape);
    });
    bool applyToLater = false;
    VellPubDoc::showSameNameMsgBox("plan.dwg", "plan(1).dwg", applyToLater);
    const QStringList expected{
        "A file of this name already exists here:\nplan.dwg",
        "Replace the existing file with the new one\nor\nkeep the existing file and name "
        "the new one plan(1).dwg?",
        "Do this for all further name conflicts",
        "Replace",
        "Add",
        "Skip",
        "Cancel",
    };
    QCOMPARE(shown, expected);
}

void TestTranslations::textsAreChineseWithoutATranslation()
{
    QCOMPARE(VellPubDoc::getFileTypeName("dwg"), QString("图纸"));
    QCOMPARE(VellPubDoc::getNameFilters().at(0), QString("所有类型 (*.*)"));
}

QTEST_MAIN(TestTranslations)

#include "tst_translations.moc"
