#include "ClientWorld.h"

#include <sync/VellSyncPlan.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using Direction = VellSyncDirection;
using Comparison = VellSyncOptions::Comparison;
using Extras = VellSyncOptions::Extras;

Q_DECLARE_METATYPE(VellSyncOptions)

namespace {

constexpr auto Up = Direction::Up;
constexpr auto Down = Direction::Down;
constexpr auto ByTime = Comparison::SizeAndTime;
constexpr auto ByContent = Comparison::Content;

VellSyncOptions options(Direction direction, Extras extras = Extras::Keep,
                        Comparison comparison = ByTime)
{
    VellSyncOptions options;
    options.direction = direction;
    options.extras = extras;
    options.comparison = comparison;
    return options;
}

//! "action path < from (reason)" of all steps.
QStringList textOf(const VellSyncPlan &plan)
{
    static const QStringList actions =
        QStringLiteral("mkdir move create replace remove leave").split(QLatin1Char(' '));
    static const QStringList reasons =
        QStringLiteral("new size newer content moved extra same").split(QLatin1Char(' '));
    QStringList lines;
    for (const VellSyncStep &step : plan.steps) {
        QString line = actions.at(int(step.action)) + QLatin1Char(' ') + step.path;
        if (!step.fromPath.isEmpty())
            line += QLatin1String(" < ") + step.fromPath;
        lines.append(line + QLatin1String(" (") + reasons.at(int(step.reason)) + QLatin1Char(')'));
    }
    return lines;
}

} // namespace

// What is found when a local folder and one of the service are compared.
class TestSyncPlan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void steps_data();
    void steps();
    void filters_data();
    void filters();
    void theIgnoreFileIsRead();
    void stepsHaveWhatTheyNeed();
    void aMovedDocumentIsKnown();
    void aTargetThatIsNewerIsMarked();
    void whatCannotBeTransferredIsAProblem();
    void aProblemIsNotRemovedOnTheOtherSide();
    void severalEntriesOfOneName();
    void aFileAndAFolder();
    void theRemoteTreeIsOneRequest();
    void aMissingFolder();
    void aFailureOfTheServiceIsTold();
    void abortEndsIt();

private:
    //! "path content" for each file, "path/" for each folder; a content that ends with "!" is one hour newer than the other
    //! side, else one hour older.
    void makeLocal(const QStringList &entries);
    void makeRemote(const QStringList &entries);
    QString localPath(const QString &path) const { return m_local->filePath(path); }
    QString makeRemoteFolder(const QString &path);
    //! Makes the service misbehave.
    void fault(const QString &specification);
    VellSyncPlan plan(const VellSyncOptions &options)
    {
        return await(VellSyncPlan::make(&m_world->session, m_local->path(), m_rootId, options));
    }

    std::unique_ptr<ClientWorld> m_world;
    std::unique_ptr<QTemporaryDir> m_local;
    QString m_rootId;
    QHash<QString, QString> m_folders; // of the service, by path
};

void TestSyncPlan::init()
{
    m_world = std::make_unique<ClientWorld>();
    m_local = std::make_unique<QTemporaryDir>();
    m_folders.clear();
    m_world->store(QStringLiteral("beside the root"));
    m_rootId = await(m_world->documents.createFolder(QString(), QStringLiteral("root")))._id;
    m_folders.insert(QString(), m_rootId);
}

void TestSyncPlan::cleanup()
{
    m_world.reset();
    m_local.reset();
}

void TestSyncPlan::makeLocal(const QStringList &entries)
{
    constexpr qint64 HourSeconds = 3600;
    for (const QString &entry : entries) {
        const QString path = localPath(entry.section(QLatin1Char(' '), 0, 0));
        QVERIFY(QDir().mkpath(path.section(QLatin1Char('/'), 0, -2)));
        if (path.endsWith(QLatin1Char('/')))
            continue;
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(entry.section(QLatin1Char(' '), 1).toUtf8());
        QVERIFY(file.flush());
        const bool isNew = entry.endsWith(QLatin1Char('!'));
        QVERIFY(file.setFileTime(
            QDateTime::currentDateTimeUtc().addSecs(isNew ? HourSeconds : -HourSeconds),
            QFileDevice::FileModificationTime));
    }
}

QString TestSyncPlan::makeRemoteFolder(const QString &path)
{
    QString &id = m_folders[path];
    if (id.isEmpty()) {
        const int slash = path.lastIndexOf(QLatin1Char('/'));
        const QString parent = makeRemoteFolder(path.left(qMax(slash, 0)));
        const QString made =
            await(m_world->documents.createFolder(parent, path.mid(slash + 1)))._id;
        m_folders.insert(path, made);
        return made;
    }
    return id;
}

void TestSyncPlan::makeRemote(const QStringList &entries)
{
    for (const QString &entry : entries) {
        const QString path = entry.section(QLatin1Char(' '), 0, 0);
        const int slash = path.lastIndexOf(QLatin1Char('/'));
        const QString parent = makeRemoteFolder(path.left(qMax(slash, 0)));
        if (!path.endsWith(QLatin1Char('/')))
            m_world->store(path.mid(slash + 1), entry.section(QLatin1Char(' '), 1).toUtf8(),
                           parent);
    }
}

void TestSyncPlan::fault(const QString &specification)
{
    FaultRule rule;
    QString error;
    QVERIFY2(FaultRule::parse(specification, &rule, &error), qPrintable(error));
    m_world->service.addFault(rule);
}

void TestSyncPlan::steps_data()
{
    QTest::addColumn<QString>("local"); // separated by ";"
    QTest::addColumn<QString>("remote");
    QTest::addColumn<VellSyncOptions>("options");
    QTest::addColumn<QString>("expected");
    const auto remove = Extras::Remove;

    QTest::newRow("nothing") << ""
                             << "" << options(Up) << "";
    QTest::newRow("up: new") << "a 1;d/b 2;e/"
                             << "" << options(Up)
                             << "mkdir d (new);mkdir e (new);create a (new);create d/b (new)";
    QTest::newRow("down: new") << ""
                               << "a 1;d/b 2;e/" << options(Down)
                               << "mkdir d (new);mkdir e (new);create a (new);create d/b (new)";
    QTest::newRow("up: same") << "d/a 1"
                              << "d/a 1" << options(Up) << "leave d (same);leave d/a (same)";
    QTest::newRow("up: other size") << "a 12"
                                    << "a 1" << options(Up) << "replace a (size)";
    QTest::newRow("up: newer") << "a 1!"
                               << "a 22" << options(Up) << "replace a (newer)";
    QTest::newRow("up: older") << "a 11"
                               << "a 22" << options(Up) << "leave a (same)";
    QTest::newRow("down: newer") << "a 11"
                                 << "a 22" << options(Down) << "replace a (newer)";
    QTest::newRow("down: older") << "a 1!"
                                 << "a 22" << options(Down) << "leave a (same)";
    QTest::newRow("up: content") << "a 11;b 3!"
                                 << "a 22;b 3!" << options(Up, Extras::Keep, ByContent)
                                 << "replace a (content);leave b (same)";
    QTest::newRow("down: content") << "a 1!;b 33"
                                   << "a 22;b 33" << options(Down, Extras::Keep, ByContent)
                                   << "replace a (content);leave b (same)";
    QTest::newRow("content: empty files")
        << "a "
        << "a " << options(Up, Extras::Keep, ByContent) << "leave a (same)";
    QTest::newRow("up: extras kept")
        << ""
        << "a 1;d/b 2" << options(Up) << "leave a (extra);leave d (extra);leave d/b (extra)";
    QTest::newRow("up: extras removed") << ""
                                        << "a 1;d/b 2" << options(Up, remove)
                                        << "remove d/b (extra);remove d (extra);remove a (extra)";
    QTest::newRow("down: extras removed")
        << "a 1;d/b 2"
        << "" << options(Down, remove) << "remove d/b (extra);remove d (extra);remove a (extra)";
    QTest::newRow("up: moved") << "d/new 123"
                               << "old 123" << options(Up, remove)
                               << "mkdir d (new);move d/new < old (moved)";
    QTest::newRow("down: moved") << "old 123"
                                 << "d/new 123" << options(Down, remove)
                                 << "mkdir d (new);move d/new < old (moved)";
    QTest::newRow("of equal size, but not moved")
        << "new 123"
        << "old 456" << options(Up, remove) << "create new (new);remove old (extra)";
    QTest::newRow("moved, but extras are kept")
        << "new 123"
        << "old 123" << options(Up) << "create new (new);leave old (extra)";
    QTest::newRow("copied twice") << "x 123;y 123"
                                  << "old 123" << options(Up, remove)
                                  << "move x < old (moved);create y (new)";
    QTest::newRow("a copy is no move")
        << "a 123;b 123"
        << "a 123" << options(Up, remove) << "create b (new);leave a (same)";
    QTest::newRow("empty files do not move")
        << "new "
        << "old " << options(Up, remove) << "create new (new);remove old (extra)";
    QTest::newRow("a name before the slash")
        << "a/b 1;a-b 2"
        << "a/b 1" << options(Up) << "create a-b (new);leave a (same);leave a/b (same)";
}

void TestSyncPlan::steps()
{
    QFETCH(QString, local);
    QFETCH(QString, remote);
    QFETCH(VellSyncOptions, options);
    QFETCH(QString, expected);
    makeLocal(local.split(QLatin1Char(';'), Qt::SkipEmptyParts));
    makeRemote(remote.split(QLatin1Char(';'), Qt::SkipEmptyParts));
    const VellSyncPlan result = plan(options);
    QCOMPARE(textOf(result).join(QLatin1Char(';')), expected);
    QVERIFY(result.problems.isEmpty());
    QCOMPARE(result.hasChanges(),
             !expected.isEmpty()
                 && (expected.count(QStringLiteral("leave")) < result.steps.size()));
}

void TestSyncPlan::filters_data()
{
    QTest::addColumn<QString>("include");
    QTest::addColumn<QString>("exclude");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("excluded");
    QTest::newRow("exclude") << ""
                             << "*.tmp"
                             << "mkdir new (new);create new/b.txt (new);"
                                "remove old/d.txt (extra);leave old (extra)"
                             << "new/a.tmp;old/c.tmp";
    QTest::newRow("a folder") << ""
                              << "old/"
                              << "mkdir new (new);create new/a.tmp (new);create new/b.txt (new)"
                              << "old";
    QTest::newRow("include") << "*.tmp"
                             << ""
                             << "mkdir new (new);create new/a.tmp (new);"
                                "remove old/c.tmp (extra);leave old (extra)"
                             << "new/b.txt;old/d.txt";
    QTest::newRow("folders without included files") << "new/b*"
                                                    << ""
                                                    << "mkdir new (new);create new/b.txt (new)"
                                                    << "new/a.tmp;old;old/c.tmp;old/d.txt";
}

void TestSyncPlan::filters()
{
    QFETCH(QString, include);
    QFETCH(QString, exclude);
    QFETCH(QString, expected);
    QFETCH(QString, excluded);
    makeLocal({QStringLiteral("new/a.tmp 1"), QStringLiteral("new/b.txt 2")});
    makeRemote({QStringLiteral("old/c.tmp 3"), QStringLiteral("old/d.txt 4")});
    VellSyncOptions wanted = options(Up, Extras::Remove);
    wanted.include = include.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    wanted.exclude = exclude.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const VellSyncPlan result = plan(wanted);
    QCOMPARE(textOf(result).join(QLatin1Char(';')), expected);
    QCOMPARE(result.excluded.join(QLatin1Char(';')), excluded);
}

void TestSyncPlan::theIgnoreFileIsRead()
{
    makeLocal({QStringLiteral(".vellignore # comment\n\n*.tmp\n"), QStringLiteral("a.tmp 1"),
               QStringLiteral(".vell-0123456789abcdef.part 1")});
    const VellSyncPlan result = plan(options(Up));
    QCOMPARE(textOf(result), QStringList(QStringLiteral("create .vellignore (new)")));
    QCOMPARE(result.excluded,
             QStringList({QStringLiteral(".vell-0123456789abcdef.part"), QStringLiteral("a.tmp")}));
}

void TestSyncPlan::stepsHaveWhatTheyNeed()
{
    makeLocal({QStringLiteral("d/a 12"), QStringLiteral("d/e/b 123"), QStringLiteral("c 1")});
    makeRemote({QStringLiteral("d/a 1")});
    const VellSyncPlan result = plan(options(Up));
    QCOMPARE(textOf(result).join(QLatin1Char(';')),
             QStringLiteral("mkdir d/e (new);create c (new);replace d/a (size);"
                            "create d/e/b (new);leave d (same)"));
    QCOMPARE(result.projectId, QStringLiteral("p1"));
    QCOMPARE(result.bytesToTransfer(), 6);
    QCOMPARE(result.count(VellSyncStep::Action::Create), 2);
    const VellSyncStep &folder = result.steps.at(0);
    QVERIFY(folder.isFolder);
    QCOMPARE(folder.parentId, m_folders.value(QStringLiteral("d")));
    const VellSyncStep &inRoot = result.steps.at(1);
    QCOMPARE(inRoot.parentId, m_rootId);
    QCOMPARE(inRoot.localPath, localPath(QStringLiteral("c")));
    const VellSyncStep &version = result.steps.at(2);
    QCOMPARE(version.document.name, QStringLiteral("a"));
    QVERIFY(!version.document._id.isEmpty());
    const VellSyncStep &inNewFolder = result.steps.at(3);
    QVERIFY(inNewFolder.parentId.isEmpty());
    QCOMPARE(inNewFolder.parentPath, QStringLiteral("d/e"));
}

void TestSyncPlan::aMovedDocumentIsKnown()
{
    makeLocal({QStringLiteral("d/new 123")});
    makeRemote({QStringLiteral("d/"), QStringLiteral("old 123")});
    const VellSyncStep move = plan(options(Up, Extras::Remove)).steps.at(0);
    QCOMPARE(move.document.name, QStringLiteral("old"));
    QCOMPARE(move.parentId, m_folders.value(QStringLiteral("d")));
    QCOMPARE(move.sizeBytes, 0);
}

void TestSyncPlan::aTargetThatIsNewerIsMarked()
{
    makeLocal({QStringLiteral("a 1"), QStringLiteral("b 22!")});
    makeRemote({QStringLiteral("a 22"), QStringLiteral("b 1")});
    const VellSyncPlan result = plan(options(Up));
    QVERIFY(result.steps.at(0).isTargetNewer);
    QVERIFY(!result.steps.at(1).isTargetNewer);
}

void TestSyncPlan::whatCannotBeTransferredIsAProblem()
{
    makeLocal({QStringLiteral("a 1"), QStringLiteral("d/b 1")});
#ifdef Q_OS_UNIX
    QVERIFY(QFile::link(localPath(QStringLiteral("a")), localPath(QStringLiteral("link"))));
    QVERIFY(QFile::link(localPath(QStringLiteral("d")), localPath(QStringLiteral("folder link"))));
    QVERIFY(QFile::link(m_local->path(), localPath(QStringLiteral("d/circle"))));
    makeLocal({QStringLiteral("back\\slash 1")});
    const VellSyncPlan result = plan(options(Up));
    QStringList paths;
    for (const VellSyncProblem &problem : result.problems) {
        paths.append(problem.path);
        QVERIFY(!problem.error.text.isEmpty());
    }
    paths.sort();
    QCOMPARE(paths,
             QStringList({QStringLiteral("back\\slash"), QStringLiteral("d/circle"),
                          QStringLiteral("folder link"), QStringLiteral("link")}));
    QCOMPARE(textOf(result).join(QLatin1Char(';')),
             QStringLiteral("mkdir d (new);create a (new);create d/b (new)"));
#endif
}

void TestSyncPlan::aProblemIsNotRemovedOnTheOtherSide()
{
#ifdef Q_OS_UNIX
    makeLocal({QStringLiteral("a 1")});
    QVERIFY(QFile::link(localPath(QStringLiteral("a")), localPath(QStringLiteral("d"))));
    makeRemote({QStringLiteral("d/b 1")});
    const VellSyncPlan result = plan(options(Up, Extras::Remove));
    QCOMPARE(textOf(result), QStringList(QStringLiteral("create a (new)")));
    QCOMPARE(result.problems.size(), 1);
#endif
}

void TestSyncPlan::severalEntriesOfOneName()
{
    makeLocal({QStringLiteral("a 1"), QStringLiteral("b 1")});
    makeRemote({QStringLiteral("a 1"), QStringLiteral("a 2")});
    const VellSyncPlan result = plan(options(Up, Extras::Remove));
    QCOMPARE(textOf(result), QStringList(QStringLiteral("create b (new)")));
    QCOMPARE(result.problems.size(), 1);
    QCOMPARE(result.problems.at(0).path, QStringLiteral("a"));
    QCOMPARE(result.problems.at(0).error.kind, VellError::Kind::NameTaken);
}

void TestSyncPlan::aFileAndAFolder()
{
    makeLocal({QStringLiteral("a/b 1")});
    makeRemote({QStringLiteral("a 1")});
    const VellSyncPlan result = plan(options(Up, Extras::Remove));
    QVERIFY(result.steps.isEmpty());
    QCOMPARE(result.problems.size(), 1);
    QCOMPARE(result.problems.at(0).path, QStringLiteral("a"));
}

void TestSyncPlan::theRemoteTreeIsOneRequest()
{
    makeRemote({QStringLiteral("a/b/c/d 1"), QStringLiteral("e/f 2")});
    fault(QStringLiteral("status=503,path=/document-service,nth=2,times=100"));
    QCOMPARE(plan(options(Down)).steps.size(), 6);
}

void TestSyncPlan::aMissingFolder()
{
    makeRemote({QStringLiteral("a 1")});
    const QString missing = localPath(QStringLiteral("missing"));
    const VellSyncPlan down =
        await(VellSyncPlan::make(&m_world->session, missing, m_rootId, options(Down)));
    QCOMPARE(textOf(down), QStringList(QStringLiteral("create a (new)")));
    QCOMPARE(down.steps.at(0).localPath, missing + QStringLiteral("/a"));
    const VellError error = waitForEnd(
        VellSyncPlan::make(&m_world->session, missing, m_rootId, options(Up, Extras::Remove)));
    QCOMPARE(error.kind, VellError::Kind::LocalFile); // and not a plan that removes everything
}

void TestSyncPlan::aFailureOfTheServiceIsTold()
{
    makeLocal({QStringLiteral("a 1")});
    fault(QStringLiteral("status=503"));
    const VellError error =
        waitForEnd(VellSyncPlan::make(&m_world->session, m_local->path(), m_rootId, options(Up)));
    QCOMPARE(error.httpStatus, 503);
}

void TestSyncPlan::abortEndsIt()
{
    fault(QStringLiteral("stall"));
    auto *const operation =
        VellSyncPlan::make(&m_world->session, m_local->path(), m_rootId, options(Up));
    operation->abort();
    QCOMPARE(waitForEnd(operation).kind, VellError::Kind::Cancelled);
}

QTEST_GUILESS_MAIN(TestSyncPlan)
#include "tst_sync_plan.moc"
