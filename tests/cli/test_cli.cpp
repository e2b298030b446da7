#include "checkrun.h"
#include "config/sourceregistry.h"
#include "store/checkhistory.h"
#include "store/healthlog.h"
#include "store/silencestore.h"
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

// lanternic-check as a user runs it: reading one document, fetching one, and whole passes.
class TestCli : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    LoopbackServer server;

    QString line(const QString &label, const QByteArray &path)
    {
        return label + u'=' + server.url(path).toString();
    }

private Q_SLOTS:
    void initTestCase()
    {
        server.route("/ok", {200,
                             R"({"schema":"lanternic.v1","health":"operational","incidents":[)"
                             R"({"id":"i1","name":"Queue backlog","status":"monitoring"}]})",
                             {}});
        server.route("/down", {200, fixture(u"relay-feed.json"_s).replace("degraded", "down"), {}});
        QFile big(dir.filePath(u"big.json"_s));
        QVERIFY(big.open(QIODevice::WriteOnly) && big.resize(100 * 1024 * 1024));
    }

    // The reading side of the relay feed is the watcher's test's business.
    void relayFormat()
    {
        const Run r = run({u"--source"_s, line(u"Ok"_s, "/ok?"), u"--source"_s,
                           line(u"Down"_s, "/down?"), u"--format"_s, u"relay"_s, u"--relay-name"_s,
                           u"Team"_s, u"--relay-url"_s, u"https://team.example/status"_s});
        QCOMPARE(r.exitCode, 2);
        const QJsonObject feed = r.json();
        QCOMPARE(feed[u"schema"_s], u"lanternic.v1"_s);
        QCOMPARE(feed[u"name"_s], u"Team"_s);
        QCOMPARE(feed[u"url"_s], u"https://team.example/status"_s);
        QCOMPARE(feed[u"health"_s], u"down"_s);
        QCOMPARE(feed[u"components"_s].toArray().size(), 2);
        // Each source's incidents, named after it, and the source's id before their own.
        const QJsonObject incident = feed[u"incidents"_s].toArray().first().toObject();
        QCOMPARE(incident[u"name"_s], u"Ok: Queue backlog"_s);
        QVERIFY(incident[u"id"_s].toString().endsWith(u"/ok::i1"_s));
        QCOMPARE(feed[u"maintenances"_s].toArray().size(), 0);
        QCOMPARE(r.out, QJsonDocument::fromJson(r.out).toJson(QJsonDocument::Compact) + '\n');
    }

    // Planned work alone has its own mark and words; its health, and so the exit status, stay.
    void maintenanceAlone()
    {
        server.route(
            "/planned",
            {200,
             R"({"schema":"lanternic.v1","components":[{"id":"db","name":"Database",)"
             R"("status":"under_maintenance"}],"maintenances":[{"id":"m1","name":"Failover",)"
             R"("status":"in_progress","startsAt":"2026-01-01T00:00:00Z"}]})",
             {}});
        const Run r = run({u"--source"_s, line(u"M"_s, "/planned?")});
        QCOMPARE(r.exitCode, 1);
        QCOMPARE(QString::fromUtf8(r.out).section(u'\n', 0, 0), u"\u2692 M  Under maintenance"_s);
    }

    void feedTextCannotForgeTheReport()
    {
        server.route("/evil",
                     {200,
                      "{\"schema\":\"lanternic.v1\",\"health\":\"down\",\"name\":\"Evil\\u202e\","
                      "\"detail\":\"x\\u0000y\\u001b[2J\\n\\u2713 GitHub  Operational\"}",
                      {}});
        const Run r = run(
            {u"--settings"_s, dir.filePath(u"evil.ini"_s), u"--source"_s, line(u"E"_s, "/evil?")});
        QCOMPARE(r.exitCode, 2);
        QCOMPARE(QString::fromUtf8(r.out),
                 u"\u2717 Evil  x y [2J \u2713 GitHub  Operational\n1 down\n"_s);
        // As JSON, the same text, written as QJsonDocument would write it.
        const Run json = run({u"--json"_s, u"--source"_s, line(u"E"_s, "/evil?")});
        QCOMPARE(json.out, QJsonDocument::fromJson(json.out).toJson(QJsonDocument::Compact) + '\n');
        QCOMPARE(json.json()[u"rows"_s].toArray().first()[u"name"_s], u"Evil\u202e"_s);
    }

    // One pass over the same sources, with one component silenced, in every report format.
    void reports_data()
    {
        QTest::addColumn<QStringList>("format");
        QTest::addColumn<QString>("out");
        // By name, whatever its case.
        QTest::newRow("plain") << QStringList{}
                               << u"\u2713 apex        Operational\n"
                                  u"  \u21b3 Monitoring: Queue backlog\n"
                                  u"\u2717 Build farm  CI runners \u2014 down\n1 down\n\n"
                                  u"Silenced:\n  Build farm \u00b7 Code signing (forever)\n"_s;
        const QString tooltip = u"\"tooltip\":\"apex: Operational\\n  \u21b3 Queue backlog\\nBuild "
                                u"farm: CI runners \u2014 "
                                u"down\"}\n"_s;
        QTest::newRow("waybar") << QStringList{u"--format"_s, u"waybar"_s}
                                << u"{\"class\":\"down\",\"percentage\":0,\"text\":\"1 down\","_s +
                                       tooltip;
        QTest::newRow("waybar, short")
            << QStringList{u"--format"_s, u"waybar"_s, u"--short"_s}
            << u"{\"class\":\"down\",\"percentage\":0,\"text\":\"\u2717 1\","_s + tooltip;
        // i3blocks: full text, short text, colour; 33 (urgent) when something is down.
        QTest::newRow("i3blocks") << QStringList{u"--format"_s, u"i3blocks"_s}
                                  << u"\u2717 1 down\n\u2717 1\n#E83A30\n"_s;
        QTest::newRow("line") << QStringList{u"--format"_s, u"line"_s} << u"\u2717 1 down\n"_s;
        QTest::newRow("nagios")
            << QStringList{u"--format"_s, u"nagios"_s}
            << u"LANTERNIC CRITICAL - 1 down | down=1 degraded=0 unknown=0 operational=1\n"
               u"\u2717 Build farm: CI runners \u2014 down\n\u21b3 apex: Queue backlog\n"_s;
    }

    void reports()
    {
        QFETCH(QStringList, format);
        const QString file = dir.filePath(u"reports.ini"_s);
        const QString down = u"127.0.0.1:%1/down"_s.arg(server.port());
        QSettings(file, QSettings::IniFormat)
            .setValue(u"Lanternic.silences"_s,
                      u"{\"%1::signing\":{\"forever\":{}}}"_s.arg(down).toUtf8());
        const Run r = run(QStringList{u"--settings"_s, file, u"--source"_s, line(u"apex"_s, "/ok?"),
                                      u"--source"_s, line(u"alpha"_s, "/down?")} +
                          format);
        QCOMPARE(r.exitCode, format.contains(u"i3blocks"_s) ? 33 : 2);
        QTEST(QString::fromUtf8(r.out), "out");
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
        const QJsonObject report = r.json();
        QStringList keys = report.keys();
        QCOMPARE(keys, (QStringList{u"badgeCount"_s, u"checkedAt"_s, u"overallHealth"_s,
                                    u"results"_s, u"rows"_s, u"silenced"_s, u"summaryText"_s}));
        QCOMPARE(report[u"badgeCount"_s], 1);
        QCOMPARE(r.out, QJsonDocument::fromJson(r.out).toJson(QJsonDocument::Compact) + '\n');
        const QJsonObject down = report[u"results"_s].toArray().last().toObject();
        QCOMPARE(down[u"incidents"_s].toArray().size(), 0);
        QCOMPARE(down[u"maintenances"_s].toArray().size(), 0);
        const QJsonObject ok = report[u"results"_s].toArray().first().toObject();
        QStringList incidentKeys = ok[u"incidents"_s].toArray().first().toObject().keys();
        QCOMPARE(incidentKeys, (QStringList{u"id"_s, u"impact"_s, u"name"_s, u"startedAt"_s,
                                            u"status"_s, u"update"_s, u"updatedAt"_s, u"url"_s}));

        QSettings settings(file, QSettings::IniFormat);
        QCOMPARE(settings.value(u"Lanternic.sources"_s).toString(), u"Mine=example.invalid"_s);
        QVERIFY(settings.value(u"Lanternic.checkHistory"_s).toByteArray().contains("/down"));
    }

    // Runs on one settings file at once keep each other's ticks.
    void runsAtOnceKeepEveryTick()
    {
        const QString file = dir.filePath(u"shared.ini"_s);
        int left[2] = {4, 4};
        const QString sources[2] = {line(u"Ok"_s, "/ok?"), line(u"Down"_s, "/down?")};
        // A run that failed names itself, with what it said, rather than only a missing tick.
        QStringList failed;
        std::function<void(int)> next = [&](int chain) {
            if (left[chain]-- == 0)
                return;
            auto *process = new QProcess(this);
            connect(process, &QProcess::finished, this,
                    [&next, &failed, process, chain](int code, QProcess::ExitStatus status) {
                        // The page that is up exits 0, the one that is down 2.
                        if (status != QProcess::NormalExit || code != chain * 2)
                            failed.append(
                                u"exit %1 (%2): %3"_s.arg(code)
                                    .arg(int(status))
                                    .arg(QString::fromUtf8(process->readAllStandardError())));
                        process->deleteLater();
                        next(chain);
                    });
            process->start(QStringLiteral(LANTERNIC_CHECK_BINARY),
                           {u"--settings"_s, file, u"--source"_s, sources[chain]});
        };
        next(0);
        next(1);
        QTRY_VERIFY_WITH_TIMEOUT(left[0] < 0 && left[1] < 0, 60'000);
        QVERIFY2(failed.isEmpty(), qPrintable(failed.join(u'\n')));
        QSettings settings(file, QSettings::IniFormat);
        const lanternic::CheckHistory history = lanternic::CheckHistory::load(settings);
        QCOMPARE(history.byId.size(), 2);
        for (const QList<lanternic::HealthTick> &ticks : history.byId)
            QCOMPARE(ticks.size(), 4);
    }

    // What another program writes while a pass runs is still there when it has finished.
    void aPassKeepsWhatOthersWroteMeanwhile()
    {
        const QString file = dir.filePath(u"meanwhile.ini"_s);
        server.route("/slow", {200, fixture(u"relay-feed.json"_s), {}, false, 1500});
        const QString slowLine = line(u"Slow"_s, "/slow?");
        QSettings(file, QSettings::IniFormat).setValue(u"Lanternic.sources"_s, slowLine);
        QProcess pass;
        pass.start(QStringLiteral(LANTERNIC_CHECK_BINARY), {u"--settings"_s, file});
        QTRY_VERIFY(server.requests().contains("/slow?"));
        const QString edited = slowLine + u"\nOk="_s + server.url("/ok?").toString();
        {
            QSettings other(file, QSettings::IniFormat);
            other.setValue(u"Lanternic.sources"_s, edited);
            lanternic::SilenceStore(other).silence(u"ok"_s, lanternic::SilenceDuration::forever,
                                                   QDateTime::currentDateTimeUtc());
        }
        QTRY_COMPARE_WITH_TIMEOUT(pass.state(), QProcess::NotRunning, 10'000);
        QSettings settings(file, QSettings::IniFormat);
        QCOMPARE(settings.value(u"Lanternic.sources"_s).toString(), edited);
        QVERIFY(lanternic::SilenceStore(settings).entries().contains(u"ok"_s));
        QVERIFY(settings.value(u"Lanternic.checkHistory"_s).toByteArray().contains("/slow"));
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
        const Run r = run({u"--json"_s}, {}, environment);
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.json()[u"results"_s][0][u"name"_s], u"Ok"_s);
        QVERIFY(conf.open(QIODevice::ReadOnly));
        QCOMPARE(conf.readAll(), before);
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
        QCOMPARE(r.out.count('\n'), 1);
        const QJsonObject result = r.json();
        QCOMPARE(result[u"name"_s], u"Cloudflare"_s);
        QCOMPARE(result[u"url"_s], u"https://www.cloudflarestatus.com"_s);
        QCOMPARE(result[u"components"_s].toArray().size(), 1);
        QCOMPARE(result[u"components"_s][0][u"id"_s], u"cloudflare::a"_s);
    }

    // The catalogue and the source lines as the command line lists them.
    void listings_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("out");
        QTest::newRow("catalog") << QStringList{u"catalog"_s, u"githubstatus"_s} << 0
                                 << u"GitHub  https://www.githubstatus.com  statuspage\n"_s;
        QTest::newRow("catalog, JSON")
            << QStringList{u"catalog"_s, u"--json"_s, u"slack-status"_s} << 0
            << u"[{\"name\":\"Slack\",\"platform\":\"slack\",\"url\":\"https://"
               u"slack-status.com\"}]\n"_s;
        QTest::newRow("catalog, no match")
            << QStringList{u"catalog"_s, u"zzzqqq"_s} << 1 << QString();
        QTest::newRow("sources")
            << QStringList{u"sources"_s, u"--source"_s, u"Team=http://t.example/l.json"_s,
                           u"--source"_s, u"oops"_s}
            << 0
            << u"line 1: Team \u2192 http://t.example/l.json (feed)\nline 2: ignored \u2014 no "
               u"\u201c=\u201d\n"_s;
        // The user's own text reaches the terminal cleaned, and a "%1" in it as typed.
        QTest::newRow("sources, label cleaned and kept")
            << QStringList{u"sources"_s, u"--source"_s,
                           u"\u001b[2J%1\u202e=http://t.example/a.json"_s, u"--source"_s,
                           u"%2=http://t.example/a.json"_s}
            << 0
            << u"line 1:  [2J%1 \u2192 http://t.example/a.json (feed)\nline 2: %2 \u2192 "
               u"http://t.example/a.json (feed), the same feed as line 1\n"_s;
        QTest::newRow("sources, none usable")
            << QStringList{u"sources"_s, u"--source"_s, u"X=https://"_s} << 3
            << u"line 1: ignored \u2014 no host\nno line makes a source: the default sources are "
               u"watched\n"_s;
    }

    void listings()
    {
        QFETCH(QStringList, arguments);
        QFile(dir.filePath(u"empty.ini"_s)).open(QIODevice::WriteOnly);
        const Run r = run(QStringList{u"--settings"_s, dir.filePath(u"empty.ini"_s)}.mid(
                              arguments.first() == u"sources"_s ? 0 : 2) +
                          arguments);
        QTEST(r.exitCode, "exitCode");
        QTEST(QString::fromUtf8(r.out), "out");
        // Nothing found is said, not left to a silent exit status.
        QCOMPARE(r.err.startsWith("lanternic-check: nothing in the catalogue matches \"zzzqqq\""),
                 arguments.contains(u"zzzqqq"_s));
    }

    // Uptime and troubles from the health log the app keeps, as text and as JSON.
    void history()
    {
        const QString file = dir.filePath(u"history.ini"_s);
        const QDateTime now = QDateTime::currentDateTimeUtc();
        {
            QSettings settings(file, QSettings::IniFormat);
            const QString sources = line(u"Ok"_s, "/ok?");
            settings.setValue(u"Lanternic.sources"_s, sources);
            const QString id = lanternic::SourceRegistry::sources(sources, {}).first().id;
            lanternic::HealthLog log;
            log.record(id, lanternic::Health::operational, {}, now.addSecs(-3 * 3600), {});
            log.record(id, lanternic::Health::down, {u"Outage"_s}, now.addSecs(-2 * 3600),
                       now.addSecs(-2 * 3600 - 60));
            log.record(id, lanternic::Health::operational, {}, now.addSecs(-3600),
                       now.addSecs(-3660));
            log.save(settings);
        }
        const Run text = run({u"history"_s, u"--settings"_s, file, u"--days"_s, u"1"_s});
        QCOMPARE(text.exitCode, 0);
        QVERIFY2(text.out.startsWith("Ok  66.6 %  1 trouble  longest 1 h (down, "), text.out);
        const Run json = run({u"history"_s, u"--settings"_s, file, u"--json"_s});
        const QJsonObject row = QJsonDocument::fromJson(json.out).array().first().toObject();
        QCOMPARE(row.keys(), (QStringList{u"id"_s, u"name"_s, u"troubles"_s, u"uptime"_s,
                                          u"watchedSeconds"_s}));
        QCOMPARE(row[u"name"_s], u"Ok"_s);
        QVERIFY(qAbs(row[u"uptime"_s].toDouble() - 2.0 / 3.0) < 0.01);
        QVERIFY(qAbs(row[u"watchedSeconds"_s].toDouble() - 3 * 3600) < 60);
        const QJsonObject trouble = row[u"troubles"_s][0].toObject();
        QCOMPARE(trouble.keys(), (QStringList{u"end"_s, u"health"_s, u"incidents"_s, u"start"_s}));
        QCOMPARE(trouble[u"health"_s], u"down"_s);
        QCOMPARE(trouble[u"incidents"_s].toArray().first(), u"Outage"_s);
    }

    void usageErrors_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("said"); // a part of the message, where it matters
        QTest::newRow("unknown option")
            << QStringList{u"read"_s, u"--bogus"_s, u"-"_s} << u"unknown option '--bogus'"_s;
        QTest::newRow("settings in a folder that is not there")
            << QStringList{u"--settings"_s, u"/nonexistent/folder/x.conf"_s}
            << u"no folder /nonexistent/folder"_s;
        QTest::newRow("read option in a pass") << QStringList{u"--pretty"_s} << QString();
        QTest::newRow("unknown command") << QStringList{u"show"_s, u"x"_s} << QString();
        QTest::newRow("missing file")
            << QStringList{u"read"_s, u"/nonexistent/file.json"_s} << QString();
        QTest::newRow("not a web URL")
            << QStringList{u"fetch"_s, u"file:///etc/passwd"_s} << QString();
        QTest::newRow("file over 16 MiB")
            << QStringList{u"read"_s, dir.filePath(u"big.json"_s)} << QString();
        QTest::newRow("history of a settings file that is not there")
            << QStringList{u"history"_s, u"--settings"_s, dir.filePath(u"typo.ini"_s)}
            << u"no settings file"_s;
        QTest::newRow("sources of a settings file that is not there")
            << QStringList{u"sources"_s, u"--settings"_s, dir.filePath(u"typo.ini"_s)}
            << u"no settings file"_s;
        QTest::newRow("days on a pass")
            << QStringList{u"--days"_s, u"3"_s} << u"--days goes with history"_s;
        QTest::newRow("days out of range")
            << QStringList{u"history"_s, u"--days"_s, u"91"_s} << u"--days takes 1 to 90"_s;
        QTest::newRow("catalog with a pass option")
            << QStringList{u"catalog"_s, u"--short"_s, u"git"_s} << QString();
        QTest::newRow("no usable source")
            << QStringList{u"--source"_s, u"no equals sign"_s, u"--source"_s, u"X=https://"_s}
            << QString();
    }

    void usageErrors()
    {
        QFETCH(QStringList, arguments);
        const Run r = run(arguments);
        QCOMPARE(r.exitCode, 3);
        QVERIFY(r.out.isEmpty());
        QCOMPARE(r.err.count('\n'), 1);
        QVERIFY(r.err.startsWith("lanternic-check: "));
        QFETCH(QString, said);
        QVERIFY2(QString::fromUtf8(r.err).contains(said), r.err.constData());
    }

    void fetchChecksTheUrl()
    {
        server.route("/status.json", {200, fixture(u"statuspage-summary.json"_s), {}});
        const QString url = server.url("/status.json").toString();
        Run r = run({u"fetch"_s, u"--name"_s, u"GitHub"_s, url});
        QCOMPARE(r.exitCode, 1);
        QCOMPARE(r.json()[u"detail"_s], u"Git Operations \u2014 degraded"_s);
        QCOMPARE(r.json()[u"url"_s], u"https://www.githubstatus.com"_s);

        // An error status outweighs a readable body.
        server.route("/broken", {500, fixture(u"statuspage-summary.json"_s), {}});
        r = run({u"fetch"_s, server.url("/broken").toString()});
        QCOMPARE(r.exitCode, 3);
        QCOMPARE(r.json()[u"detail"_s], u"Could not reach status page"_s);
        QCOMPARE(r.json()[u"error"_s], u"Bad server response (HTTP 500)"_s);
        QCOMPARE(r.json()[u"url"_s], server.url("/broken").toString());
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "test_cli.moc"
