#include "World.h"

#include <QTest>

class TestWorkflowTwoUsers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutATokenNothingIsSaid();
    void marksAreEachUsersOwn();
    void rightsAreThoseOfTheRole_data();
    void rightsAreThoseOfTheRole();
    void aContributorChangesOnlyOwnDocuments();
};

namespace {

//! A world with an owner, who is the current user, and one more user with \a role.
struct TwoUsers
{
    explicit TwoUsers(const QString &role)
        : owner(world.service.addUser("owner")), other(world.service.addUser("other"))
    {
        const QString project = "p1";
        if (!world.service.addProject(project, "Bridge")
            || !world.service.setRole(project, "owner", "owner")
            || !world.service.setRole(project, "other", role))
            qFatal("the users cannot be set up");
        world.becomeUser(owner);
    }

    World world;
    QString owner;
    QString other;
};

} // namespace

void TestWorkflowTwoUsers::withoutATokenNothingIsSaid()
{
    TwoUsers users("viewer");
    users.world.makeFolder("secret");
    users.world.becomeUser(QString());
    QCOMPARE(users.world.names(QString()), QStringList());
    QCOMPARE(users.world.lastFailure.httpStatus, 401);
    users.world.becomeUser("guessed");
    QCOMPARE(users.world.names(QString()), QStringList());
    QCOMPARE(users.world.lastFailure.httpStatus, 401);
}

void TestWorkflowTwoUsers::marksAreEachUsersOwn()
{
    TwoUsers users("viewer");
    World &world = users.world;
    const QString id = world.upload("a.txt", "a")._id;
    QVERIFY(world.data.setFrequentDocument(id, true));
    VellDocumentConditon frequent;
    frequent.isFrequent = true;
    QCOMPARE(world.names(frequent).size(), 1);

    world.becomeUser(users.other);
    QCOMPARE(world.names(frequent).size(), 0);
    QVERIFY(!world.fetch(id).favorite);
    QVERIFY(world.data.setFrequentDocument(id, true));
    QCOMPARE(world.names(frequent).size(), 1);

    world.becomeUser(users.owner);
    QVERIFY(world.data.setFrequentDocument(id, false));
    world.becomeUser(users.other);
    QVERIFY(world.fetch(id).favorite);
}

void TestWorkflowTwoUsers::rightsAreThoseOfTheRole_data()
{
    QTest::addColumn<QString>("role");
    QTest::addColumn<bool>("download");
    QTest::addColumn<bool>("upload");
    QTest::addColumn<bool>("editOfOthers");
    QTest::newRow("viewer") << "viewer" << true << false << false;
    QTest::newRow("contributor") << "contributor" << true << true << false;
    QTest::newRow("editor") << "editor" << true << true << true;
    QTest::newRow("owner") << "owner" << true << true << true;
}

// What the checks answer is what the service then does.
void TestWorkflowTwoUsers::rightsAreThoseOfTheRole()
{
    QFETCH(QString, role);
    QFETCH(bool, download);
    QFETCH(bool, upload);
    QFETCH(bool, editOfOthers);
    TwoUsers users(role);
    World &world = users.world;
    const QString category = "doc";
    const VellDocument file = world.upload("a.txt", "a", QString(), category);
    world.becomeUser(users.other);

    QCOMPARE(world.data.canDownloadDocFolder(file._id, category), download);
    QCOMPARE(!world.download(file).isEmpty(), download);
    QCOMPARE(world.data.canUploadDocFolder(QString(), category), upload);
    VellDocument folder;
    folder.name = "folder";
    QCOMPARE(world.data.createDocFolder(folder), upload);
    QCOMPARE(world.data.canEditDocFolder(file._id, category), editOfOthers);
    QCOMPARE(world.data.updateDocRemake(false, file._id, "x"), editOfOthers);
    QCOMPARE(world.data.canDeleteDocFolder(file._id, category), editOfOthers);
    QCOMPARE(world.fetch(file._id).auths.value("edit"), editOfOthers);
    QCOMPARE(world.data.deleteDoc(file._id), editOfOthers);
    QCOMPARE(world.data.canEditSelf(category), upload);
    QCOMPARE(world.data.canDeleteSelf(category), upload);
}

void TestWorkflowTwoUsers::aContributorChangesOnlyOwnDocuments()
{
    TwoUsers users("contributor");
    World &world = users.world;
    const QString theirs = world.upload("theirs.txt", "a")._id;
    world.becomeUser(users.other);
    const QString own = world.upload("own.txt", "b")._id;
    QVERIFY(world.data.canEditDocFolder(own, QString()));
    QVERIFY(world.data.updateDocRemake(false, own, "mine"));
    QVERIFY(!world.data.updateDocRemake(false, theirs, "mine"));
    QCOMPARE(world.lastFailure.httpStatus, 403);
    QVERIFY(world.data.deleteDoc(own));
    QVERIFY(!world.data.deleteDoc(theirs));
}

QTEST_GUILESS_MAIN(TestWorkflowTwoUsers)
#include "tst_workflow_two_users.moc"
