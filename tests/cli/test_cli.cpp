#include "support/fixtures.h"
#include "support/loopbackserver.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Run {
    int exitCode;
    QByteArray out;
    QByteArray err;

    QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
};

} // namespace

class TestCli : public QObject {
    Q_OBJECT

    QTemporaryDir dir;

public:
    // Runs the tool while this process's event loop keeps serving loopback requests.
    Run run(const QStringList &arguments, const QByteArray &input = {},
            const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(LANTERNIC_CHECK_BINARY), arguments);
        process.write(input);
        process.closeWriteChannel();
        QSignalSpy finished(&process, &QProcess::finished);
        if (!finished.wait(30'000)) {
            process.kill();
            qFatal("lanternic-check %s did not finish", qPrintable(arguments.join(u' ')));
        }
        // A crash shows as exit code -1, which no test expects.
        const bool crashed = process.exitStatus() != QProcess::NormalExit;
        return {crashed ? -1 : process.exitCode(), process.readAllStandardOutput(),
                process.readAllStandardError()};
    }

private:
    QString writeFile(const QString &name, const QByteArray &data)
    {
        QFile file(dir.filePath(name));
        file.open(QIODevice::WriteOnly);
        file.write(data);
        return file.fileName();
    }

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

    void prettyIsIndented()
    {
        const Run r = run({u"read"_s, u"--pretty"_s, u"-"_s}, R"({"schema":"lanternic.v1"})");
        QVERIFY(r.out.count('\n') > 5);
        QCOMPARE(r.json()[u"url"_s], u"https://status.invalid"_s);
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

    void updogOptions()
    {
        const QString feed = QStringLiteral(LANTERNIC_FIXTURES_DIR "/updog-outages.json");
        Run r = run({u"read"_s, u"--updog-provider"_s, u"amazonaws"_s, u"--updog-service"_s,
                     u"ec2"_s, feed});
        QCOMPARE(r.json()[u"detail"_s], u"Outage detected \u2014 us-east-1"_s);
        r = run({u"read"_s, u"--updog-provider"_s, u"nobody"_s, feed});
        QCOMPARE(r.exitCode, 3);
        QCOMPARE(r.json()[u"error"_s], u"Updog does not monitor nobody"_s);
    }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("unknown option") << QStringList{u"read"_s, u"--bogus"_s, u"-"_s};
        QTest::newRow("pass option with read") << QStringList{u"read"_s, u"--json"_s, u"-"_s};
        QTest::newRow("read option in a pass") << QStringList{u"--pretty"_s};
        QTest::newRow("unknown command") << QStringList{u"show"_s, u"x"_s};
        QTest::newRow("missing file") << QStringList{u"read"_s, u"/nonexistent/file.json"_s};
        QTest::newRow("a directory") << QStringList{u"read"_s, u"/"_s};
        QTest::newRow("two files") << QStringList{u"read"_s, u"a"_s, u"b"_s};
        QTest::newRow("not a web URL") << QStringList{u"fetch"_s, u"file:///etc/passwd"_s};
        QTest::newRow("option without value") << QStringList{u"read"_s, u"-"_s, u"--id"_s};
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

    void help()
    {
        const Run r = run({u"--help"_s});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.out.contains("lanternic-check read"));
        QVERIFY(r.out.contains("--updog-service"));
    }

    void hostileInput_data()
    {
        QTest::addColumn<QByteArray>("input");
        QByteArray noise(1 << 16, Qt::Uninitialized);
        QRandomGenerator random(20261122);
        for (char &c : noise)
            c = char(random.bounded(256));
        QTest::newRow("random bytes") << noise;
        QTest::newRow("invalid UTF-8")
            << QByteArray("{\"schema\":\"lanternic.v1\",\"name\":\"\xc3\x28\"}");
        QTest::newRow("deep arrays") << QByteArray(200000, '[') + QByteArray(200000, ']');
        QByteArray objects;
        for (int i = 0; i < 50000; ++i)
            objects += "{\"a\":";
        QTest::newRow("deep objects, unterminated") << objects;
        QTest::newRow("enormous numbers") << QByteArray(
            R"({"schema":"lanternic.v1","health":1e999999,"n":)" + QByteArray(100000, '9') + "}");
        QTest::newRow("NUL bytes") << QByteArray("{\"schema\":\"lanternic.v1\"\0}", 27);
    }

    void hostileInput()
    {
        QFETCH(QByteArray, input);
        const Run r = run({u"read"_s, writeFile(u"hostile.json"_s, input)});
        QCOMPARE(r.exitCode, 3);
        QCOMPARE(r.json()[u"detail"_s], u"Unrecognized status format"_s);
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

// One pass over the configured sources, as the app runs it.
class TestCliPass : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    LoopbackServer server;

    Run run(const QStringList &arguments,
            const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
    {
        return TestCli().run(arguments, {}, environment);
    }

    QString line(const QString &label, const QByteArray &path)
    {
        return label + u'=' + server.url(path).toString();
    }

private Q_SLOTS:
    void initTestCase()
    {
        server.route("/ok", {200, R"({"schema":"lanternic.v1","health":"operational"})", {}});
        server.route("/down", {200, fixture(u"relay-feed.json"_s).replace("degraded", "down"), {}});
    }

    void printsRowsSummaryAndSilences()
    {
        const QString file = dir.filePath(u"human.ini"_s);
        const QString down = u"127.0.0.1:%1/down"_s.arg(server.port());
        QSettings(file, QSettings::IniFormat)
            .setValue(u"Lanternic.silences"_s,
                      u"{\"%1::signing\":{\"forever\":{}}}"_s.arg(down).toUtf8());
        const Run r = run({u"--settings"_s, file, u"--source"_s, line(u"Zeta"_s, "/ok?"),
                           u"--source"_s, line(u"alpha"_s, "/down?")});
        QCOMPARE(r.exitCode, 2);
        const QStringList lines = QString::fromUtf8(r.out).split(u'\n');
        QCOMPARE(lines.value(0), u"\u2717 Build farm  CI runners \u2014 down"_s);
        QCOMPARE(lines.value(1), u"\u2713 Zeta        Operational"_s);
        QCOMPARE(lines.value(2), u"1 down"_s);
        QCOMPARE(lines.value(4), u"Silenced:"_s);
        QCOMPARE(lines.value(5), u"  Build farm \u00b7 Code signing (forever)"_s);
    }

    void jsonReportAndWhatIsKept()
    {
        const QString file = dir.filePath(u"json.ini"_s);
        {
            QSettings settings(file, QSettings::IniFormat);
            settings.setValue(u"Lanternic.sources"_s, u"Mine=example.invalid"_s);
        }
        const Run r = run({u"--settings"_s, file, u"--json"_s, u"--source"_s, line(u"Ok"_s, "/ok?"),
                           u"--source"_s, line(u"Down"_s, "/down?")});
        QCOMPARE(r.exitCode, 2);
        const QJsonObject report = QJsonDocument::fromJson(r.out).object();
        QStringList keys = report.keys();
        QCOMPARE(keys, (QStringList{u"badgeCount"_s, u"checkedAt"_s, u"overallHealth"_s,
                                    u"results"_s, u"rows"_s, u"silenced"_s, u"summaryText"_s}));
        QCOMPARE(report[u"overallHealth"_s], u"down"_s);
        QCOMPARE(report[u"badgeCount"_s], 1);
        QCOMPARE(report[u"summaryText"_s], u"1 down"_s);
        QCOMPARE(report[u"results"_s].toArray().size(), 2);
        QCOMPARE(report[u"results"_s][0][u"name"_s], u"Ok"_s);
        QCOMPARE(report[u"rows"_s][0][u"name"_s], u"Build farm"_s);
        QCOMPARE(report[u"rows"_s][0].toObject().keys(),
                 (QStringList{u"detail"_s, u"health"_s, u"id"_s, u"name"_s}));

        QSettings settings(file, QSettings::IniFormat);
        QCOMPARE(settings.value(u"Lanternic.sources"_s).toString(), u"Mine=example.invalid"_s);
        QVERIFY(settings.value(u"Lanternic.checkHistory"_s).toByteArray().contains("/down"));
    }

    void ownSettingsAreLeftAlone()
    {
        QTemporaryDir home;
        const QString file = home.filePath(u"Lanternic/Lanternic.conf"_s);
        {
            QSettings settings(file, QSettings::IniFormat);
            settings.setValue(u"Lanternic.sources"_s, line(u"Ok"_s, "/ok?"));
        }
        QFile conf(file);
        QVERIFY(conf.open(QIODevice::ReadOnly));
        const QByteArray before = conf.readAll();
        conf.close();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_CONFIG_HOME"_s, home.path());
        const Run r = run({u"--json"_s}, environment);
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(QJsonDocument::fromJson(r.out)[u"results"_s][0][u"name"_s], u"Ok"_s);
        QVERIFY(conf.open(QIODevice::ReadOnly));
        QCOMPARE(conf.readAll(), before);
    }
};

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    TestCli cli;
    TestCliPass pass;
    return QTest::qExec(&cli, argc, argv) + QTest::qExec(&pass, argc, argv);
}
#include "test_cli.moc"
