#include "sources/jsondecoder.h"

#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

class TestDecoder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void snakeKeys_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("field");
        QTest::addColumn<bool>("names");
        QTest::newRow("snake") << u"affected_components"_s << u"affectedComponents"_s << true;
        QTest::newRow("pieces are re-cased") << u"GROUP_ID"_s << u"groupId"_s << true;
        QTest::newRow("empty pieces dropped") << u"group__id"_s << u"groupId"_s << true;
        QTest::newRow("outer underscores kept") << u"_group_id_"_s << u"_groupId_"_s << true;
        QTest::newRow("one piece stays as is") << u"Status"_s << u"status"_s << false;
        QTest::newRow("lower-cased camel does not match") << u"groupid"_s << u"groupId"_s << false;
        QTest::newRow("only underscores") << u"__"_s << u"__"_s << true;
    }

    void snakeKeys()
    {
        QFETCH(QString, key);
        QFETCH(QString, field);
        const QByteArray latin1 = field.toLatin1();
        QTEST(keyNamesField(key, QLatin1StringView(latin1), KeyStyle::fromSnakeCase), "names");
    }

    void exactKeysAreNotConverted()
    {
        QVERIFY(keyNamesField(u"schema", "schema"_L1, KeyStyle::exact));
        QVERIFY(!keyNamesField(u"group_id", "groupId"_L1, KeyStyle::exact));
    }

    void typesAreStrict_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<bool>("ok");
        QTest::newRow("all present") << QByteArray(R"({"name":"a","flag":true})") << true;
        QTest::newRow("optional null") << QByteArray(R"({"name":"a","flag":null})") << true;
        QTest::newRow("required missing") << QByteArray(R"({"flag":true})") << false;
        QTest::newRow("required null") << QByteArray(R"({"name":null})") << false;
        QTest::newRow("number is no string") << QByteArray(R"({"name":1})") << false;
        QTest::newRow("number is no boolean") << QByteArray(R"({"name":"a","flag":1})") << false;
        QTest::newRow("snake spelling found") << QByteArray(R"({"display_name":"a"})") << true;
    }

    void typesAreStrict()
    {
        QFETCH(QByteArray, json);
        JsonDecoder d(KeyStyle::fromSnakeCase);
        const QJsonObject root = d.root(parseJson(json));
        const QString name = root.contains("display_name"_L1) ? d.string(root, "displayName"_L1)
                                                              : d.string(root, "name"_L1);
        d.optionalBool(root, "flag"_L1);
        QTEST(d.ok(), "ok");
        QCOMPARE(d.failure().isEmpty(), d.ok());
        if (d.ok())
            QCOMPARE(name, u"a"_s);
    }

    void firstFailureIsKept()
    {
        JsonDecoder d(KeyStyle::exact);
        const QJsonObject root = d.root(parseJson(R"({"a":1,"b":2})"));
        d.string(root, "a"_L1);
        d.optionalBool(root, "b"_L1);
        QVERIFY(!d.ok());
        QVERIFY2(d.failure().contains(u"\"a\""), qPrintable(d.failure()));
    }
};

QTEST_GUILESS_MAIN(TestDecoder)
#include "test_decoder.moc"
