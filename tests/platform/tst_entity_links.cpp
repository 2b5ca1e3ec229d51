#include <VellPublicFun/VellPub.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QTest>

using Links = QMap<QString, QStringList>;

namespace {

QJsonArray array(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).array();
}

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

} // namespace

//! Entity links between the service's array and the record's map.
class TestEntityLinks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsLinks_data();
    void readsLinks();
    void writesKindsInMapOrder();
    void writingAndReadingAreInverses();
};

void TestEntityLinks::readsLinks_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<Links>("expected");
    const QString wall = "wall";

    QTest::newRow("none") << QByteArray("[]") << Links();
    QTest::newRow("one kind") << QByteArray(R"([{"kind":"wall","ids":["a","b"]}])")
                              << Links{{wall, words("a b")}};
    QTest::newRow("a kind without identifiers")
        << QByteArray(R"([{"kind":"wall","ids":[]}])") << Links{{wall, {}}};
    QTest::newRow("two kinds") << QByteArray(
        R"([{"kind":"wall","ids":["a"]},{"kind":"门","ids":["b"]}])")
                               << Links{{wall, words("a")}, {"门", words("b")}};
    QTest::newRow("a kind that occurs twice")
        << QByteArray(R"([{"kind":"wall","ids":["b"]},{"kind":"x","ids":["c"]},)"
                      R"({"kind":"wall","ids":["a","b"]}])")
        << Links{{wall, words("b a b")}, {"x", words("c")}};
    QTest::newRow("elements of other types")
        << QByteArray(R"([null,1,"wall",["wall"],{"kind":"wall","ids":["a"]}])")
        << Links{{wall, words("a")}};
    QTest::newRow("identifiers of other types")
        << QByteArray(R"([{"kind":"wall","ids":[1,"a",null,{"b":1},["c"],"d"]}])")
        << Links{{wall, words("a d")}};
    QTest::newRow("a kind that is no text")
        << QByteArray(R"([{"kind":1,"ids":["a"]},{"ids":["b"]}])") << Links();
}

void TestEntityLinks::readsLinks()
{
    QFETCH(QByteArray, json);
    QFETCH(Links, expected);

    QCOMPARE(VellPub::jsonArrayToLinksEntity(array(json)), expected);
}

void TestEntityLinks::writesKindsInMapOrder()
{
    const Links links{{"wall", words("b a")}, {"door", {}}};
    QCOMPARE(QJsonDocument(VellPub::linksEntityToJsonArray(links)).toJson(QJsonDocument::Compact),
             QByteArray(R"([{"ids":[],"kind":"door"},{"ids":["b","a"],"kind":"wall"}])"));
    QCOMPARE(VellPub::linksEntityToJsonArray({}), QJsonArray());
}

void TestEntityLinks::writingAndReadingAreInverses()
{
    const Links links{{"wall", words("b a b")},
                      {"墙 \"1\"", words("é 图")},
                      {QString(), words("c")},
                      {"none", {}}};
    QCOMPARE(VellPub::jsonArrayToLinksEntity(VellPub::linksEntityToJsonArray(links)), links);
}

QTEST_GUILESS_MAIN(TestEntityLinks)

#include "tst_entity_links.moc"
