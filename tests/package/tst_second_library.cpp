#include "SecondLibrary.h"

#include <document_service/VellDocumentData.h>

#include <VellNetwork/NetworkManager.h>
#include <VellNetwork/VellBaseApi.h>
#include <VellSoftBase/VellSoftCache.h>

#include <QTest>

class TestSecondLibrary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void seesTheSameObjects();
    void seesWhatTheProgramHasSet();
};

void TestSecondLibrary::seesTheSameObjects()
{
    QVERIFY(dataSeenBySecondLibrary() != nullptr);
    QCOMPARE(dataSeenBySecondLibrary(), VellDocumentData::instance());
    QCOMPARE(networkSeenBySecondLibrary(), NetworkManager::instance());
}

void TestSecondLibrary::seesWhatTheProgramHasSet()
{
    VellBaseApi::GetInstance().setBaseApi("http://127.0.0.1:1/");
    GetSoftCache()->setCurrentProjectId("tower");
    QCOMPARE(baseApiSeenBySecondLibrary(), QString("http://127.0.0.1:1/"));
    QCOMPARE(projectSeenBySecondLibrary(), QString("tower"));
}

QTEST_GUILESS_MAIN(TestSecondLibrary)
#include "tst_second_library.moc"
