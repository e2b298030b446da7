#include "checkrun.h"
#include "support/fixtures.h"
#include "support/loopbackserver.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCli : public QObject {
    Q_OBJECT

    QTemporaryDir dir;

private Q_SLOTS:
    void printsOneLineWithExactlyTheResultKeys()
    {
        const Run r = run({u"read"_s, QStringLiteral(LANTERNIC_FIXTURES_DIR "/relay-feed.json")});
        QCOMPARE(r.exitCode, 1);
        QCOMPARE(r.out.count('\n'), 1);
        const QJsonObject result = r.json();
        QStringList keys = result.keys();
        QCOMPARE(keys, (QStringList{u"checkedAt"_s, u"components"_s, u"detail"_s, u"error"_s,
                                    u"health"_s, u"id"_s, u"name"_s, u"url"_s}));
        QCOMPARE(result[u"id"_s], u"source"_s);
        QCOMPARE(result[u"name"_s], u"Build farm"_s);
        QVERIFY(result[u"error"_s].isNull());
        QVERIFY(QDateTime::fromString(result[u"checkedAt"_s].toString(), Qt::ISODate).isValid());
        QVERIFY(result[u"checkedAt"_s].toString().endsWith(u'Z'));
        const QJsonObject component = result[u"components"_s].toArray().first().toObject();
        QCOMPARE(component.keys(), (QStringList{u"health"_s, u"id"_s, u"name"_s, u"status"_s}));
        QCOMPARE(component[u"id"_s], u"source::ci"_s);
    }

    void exitCodeFollowsHealth_data()
    {
        QTest::addColumn<QByteArray>("health");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("operational") << QByteArray("operational") << 0;
        QTest::newRow("degraded") << QByteArray("degraded") << 1;
        QTest::newRow("down") << QByteArray("down") << 2;
        QTest::newRow("unknown") << QByteArray("unknown") << 3;
    }

    void exitCodeFollowsHealth()
    {
        QFETCH(QByteArray, health);
        const Run r =
            run({u"read"_s, u"-"_s}, "{\"schema\":\"lanternic.v1\",\"health\":\"" + health + "\"}");
        QTEST(r.exitCode, "exitCode");
        QVERIFY(r.err.isEmpty());
    }

    void sourceOptionsShapeTheReading()
    {
        const QByteArray summary =
            R"({"status":{"indicator":"none"},"components":[)"
            R"({"id":"g","name":"Sites","status":"operational","group":true},)"
            R"({"id":"a","name":"A","status":"under_maintenance","group_id":"g"},)"
            R"({"id":"b","name":"B","status":"major_outage"}]})";
        const Run r =
            run({u"read"_s, u"--id"_s, u"cloudflare"_s, u"--name"_s, u"Cloudflare"_s, u"--home"_s,
                 u"https://www.cloudflarestatus.com"_s, u"--treat-as-operational"_s,
                 u"under_maintenance"_s, u"--include-group"_s, u"Sites"_s, u"-"_s},
                summary);
        QCOMPARE(r.exitCode, 0);
        const QJsonObject result = r.json();
        QCOMPARE(result[u"name"_s], u"Cloudflare"_s);
        QCOMPARE(result[u"url"_s], u"https://www.cloudflarestatus.com"_s);
        QCOMPARE(result[u"components"_s].toArray().size(), 1);
        QCOMPARE(result[u"components"_s][0][u"id"_s], u"cloudflare::a"_s);
    }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("unknown option") << QStringList{u"read"_s, u"--bogus"_s, u"-"_s};
        QTest::newRow("read option in a pass") << QStringList{u"--pretty"_s};
        QTest::newRow("unknown command") << QStringList{u"show"_s, u"x"_s};
        QTest::newRow("missing file") << QStringList{u"read"_s, u"/nonexistent/file.json"_s};
        QTest::newRow("not a web URL") << QStringList{u"fetch"_s, u"file:///etc/passwd"_s};
    }

    void usageErrors()
    {
        QFETCH(QStringList, arguments);
        const Run r = run(arguments);
        QCOMPARE(r.exitCode, 3);
        QVERIFY(r.out.isEmpty());
        QCOMPARE(r.err.count('\n'), 1);
        QVERIFY(r.err.startsWith("lanternic-check: "));
    }

    void hundredMegabyteFileIsRefused()
    {
        const QString path = dir.filePath(u"big.json"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(100 * 1024 * 1024));
        file.close();
        const Run r = run({u"read"_s, path});
        QCOMPARE(r.exitCode, 3);
        QVERIFY(r.err.contains("larger than 16 MiB"));
    }

    void fetchChecksTheUrl()
    {
        LoopbackServer server;
        server.route("/status.json", {200, fixture(u"statuspage-summary.json"_s), {}});
        const QString url = server.url("/status.json").toString();
        Run r = run({u"fetch"_s, u"--name"_s, u"GitHub"_s, url});
        QCOMPARE(r.exitCode, 1);
        QCOMPARE(r.json()[u"detail"_s], u"Git Operations \u2014 degraded"_s);
        QCOMPARE(r.json()[u"url"_s], u"https://www.githubstatus.com"_s);

        r = run({u"fetch"_s, server.url("/nothing-here").toString()});
        QCOMPARE(r.exitCode, 3);
        QCOMPARE(r.json()[u"detail"_s], u"Could not reach status page"_s);
        QCOMPARE(r.json()[u"url"_s], server.url("/nothing-here").toString());
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "test_cli.moc"
