#include "config/sourceregistry.h"
#include "environment/appenvironment.h"
#include "store/recheck.h"
#include "support/fakesystemevents.h"
#include "support/fixtures.h"
#include "support/loopbackserver.h"
#include "support/storefixture.h"

#include <QElapsedTimer>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

// Whole passes, as the app runs them, against a loopback server.
class TestStore : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    std::unique_ptr<QSettings> defaults;
    std::unique_ptr<LoopbackServer> server;
    std::unique_ptr<AppEnvironment> environment;
    AppSettings *settings = nullptr;
    SilenceStore *silence = nullptr;
    SourceKindStore *kinds = nullptr;
    LanternicStore *store = nullptr;
    network::Session::Options limits;
    QHash<QString, quint16> otherHosts; // hosts served by other loopback servers

    QString line(const QString &label, const QByteArray &path)
    {
        return label + u'=' + server->url(path).toString();
    }

    void makeStore(const QString &sourcesText)
    {
        defaults->setValue(u"Lanternic.sources"_s, sourcesText);
        // The hosts of the probe tests live on the loopback server.
        network::Session::Options options = limits;
        options.loopbackHosts = otherHosts;
        for (const QString &host : {u"status.example.com"_s, u"other.example"_s, u"gone.example"_s,
                                    u"dropped.example"_s, u"hang.example"_s})
            options.loopbackHosts.insert(host, server->port());
        environment =
            std::make_unique<AppEnvironment>(*defaults, options, AppEnvironment::LaunchPass::none);
        settings = &environment->settings;
        silence = &environment->silence;
        kinds = &environment->kinds;
        store = environment->store.get();
    }

    void pass()
    {
        bool done = false;
        store->refresh([&] { done = true; });
        QVERIFY(QTest::qWaitFor([&] { return done; }, 20'000));
    }

    QStringList resultLines() const
    {
        QStringList lines;
        for (const SourceResult &r : store->results())
            lines.append(r.id + u' ' + rawValue(r.health));
        return lines;
    }

private Q_SLOTS:
    void init()
    {
        limits = {};
        otherHosts.clear();
        defaults = freshSettings(dir);
        server = std::make_unique<LoopbackServer>();
    }

    void cleanup()
    {
        environment.reset();
        server.reset();
    }

    void resultsKeepConfiguredOrder()
    {
        server->route("/slow", {200, relayFeed("down"), {}, false, 300});
        server->route("/medium", {200, relayFeed("degraded"), {}, false, 150});
        server->route("/fast", {200, relayFeed("operational"), {}, false, 0});
        makeStore(line(u"Slow"_s, "/slow?") + u'\n' + line(u"Gone"_s, "/missing?") + u'\n' +
                  line(u"Medium"_s, "/medium?") + u'\n' + line(u"Fast"_s, "/fast?"));
        QSignalSpy refreshing(store, &LanternicStore::isRefreshingChanged);
        pass();
        const QString base = u"127.0.0.1:%1"_s.arg(server->port());
        QCOMPARE(resultLines(),
                 (QStringList{base + u"/slow down"_s, base + u"/missing unknown"_s,
                              base + u"/medium degraded"_s, base + u"/fast operational"_s}));
        QCOMPARE(store->results()[1].detail, u"Could not reach status page"_s);
        QCOMPARE(refreshing.size(), 2);
        QVERIFY(store->lastChecked());
        QCOMPARE(store->summaryText(), u"1 down, 1 degraded, 1 unknown"_s);
    }

    void longListsQueueBehindTheRequestsInFlight()
    {
        // Each answer waits long enough for all the first transfers to be open even on a loaded
        // machine: with 200 ms, a sanitizer run beside five others had opened 120 by then.
        server->route("/feed", {200, relayFeed("operational"), {}, false, 1000});
        QStringList lines;
        for (int i = 0; i < 300; ++i)
            lines.append(line(u"S%1"_s.arg(i), "/feed?n=" + QByteArray::number(i)));
        makeStore(lines.join(u'\n'));
        pass();
        // Answers take a while: the queue keeps as many in flight as it allows, and no more.
        QCOMPARE(server->mostOpenAtOnce(), 128);
        QCOMPARE(store->results().size(), 300);
        QCOMPARE(store->overallHealth(), Health::operational);
        QCOMPARE(store->results().last().name, u"S299"_s);
    }

    void newHostsAreProbedOnceBeforeSourcesAreBuilt()
    {
        server->route("/proxy/status.example.com", {200, fixture(u"incidentio-widget.json"_s), {}});
        // Shaped like a widget, but only a 200 answer makes one.
        server->route("/proxy/Other.Example", {203, R"({"subpages":[]})", {}});
        server->route("/api/v2/summary.json", {200, fixture(u"statuspage-summary.json"_s), {}});
        LoopbackServer::Response dropped{200, "{}", {}};
        dropped.reset = true;
        server->route("/proxy/dropped.example", dropped);
        makeStore(u"A=status.example.com\nB=Other.Example\nC=gone.example:1\nD=dropped.example"_s);
        pass();
        // The widget host is read through its widget, the other as a summary.
        QCOMPARE(store->results()[0].detail, u"Elevated error rates for image generation"_s);
        QCOMPARE(store->results()[1].detail, u"Git Operations \u2014 degraded"_s);
        QCOMPARE(kinds->cache().value(u"status.example.com"_s), SourceKind::incidentio);
        QCOMPARE(kinds->cache().value(u"other.example"_s), SourceKind::atlassian);
        QVERIFY(kinds->cache().contains(u"gone.example:1"_s));
        QVERIFY(!kinds->cache().contains(u"dropped.example"_s));
        QVERIFY(server->requests().contains("/proxy/Other.Example"));

        const qsizetype requests = server->requests().size();
        pass();
        const QList<QByteArray> second = server->requests().mid(requests);
        QVERIFY2(std::none_of(second.begin(), second.end(),
                              [](const QByteArray &r) { return r.startsWith("/proxy/Other"); }),
                 "a cached host is not probed again");
        QCOMPARE(second.count("/proxy/dropped.example"), 1);
        QCOMPARE(SourceKindStore(*defaults).cache().size(), 3);
    }

    // Hosts of the other platforms are found by their documents; a page that moves is probed
    // again, and reads as unrecognised meanwhile, never as degraded.
    void otherPlatformsAndPagesThatMove()
    {
        LoopbackServer instatus, moving, feed;
        instatus.route("/summary.json", {200, fixture(u"instatus-summary.json"_s), {}});
        moving.route("/api/v2/summary.json", {200, fixture(u"statuspage-summary.json"_s), {}});
        // A host with nothing but a feed is asked for one last.
        feed.route("/feed", {200, fixture(u"cachet-feed.rss"_s), {}});
        otherHosts = {{u"insta.example"_s, instatus.port()},
                      {u"moving.example"_s, moving.port()},
                      {u"feed.example"_s, feed.port()}};
        makeStore(u"I=insta.example\nM=moving.example\nF=feed.example"_s);
        pass();
        QCOMPARE(kinds->cache().value(u"insta.example"_s), SourceKind::instatus);
        QCOMPARE(kinds->cache().value(u"moving.example"_s), SourceKind::atlassian);
        QCOMPARE(kinds->cache().value(u"feed.example"_s), SourceKind::feed);
        QCOMPARE(store->results()[0].detail, u"Queue delays for image models"_s);
        QVERIFY(!store->results()[2].error);

        moving.route(
            "/api/v2/summary.json",
            {200, "<!doctype html><title>We moved</title>", {{"Content-Type", "text/html"}}});
        moving.route("/index.json", {200, fixture(u"betterstack-index.json"_s), {}});
        pass();
        QCOMPARE(store->results()[1].health, Health::unknown);
        QCOMPARE(store->results()[1].detail, u"Unrecognized status format"_s);
        QVERIFY(!kinds->cache().contains(u"moving.example"_s));
        pass();
        QCOMPARE(kinds->cache().value(u"moving.example"_s), SourceKind::betterstack);
        QCOMPARE(store->results()[1].detail, u"Runners \u2014 degraded"_s);
        QCOMPARE(SourceKindStore(*defaults).cache().value(u"moving.example"_s),
                 SourceKind::betterstack);
    }

    void historyAndSilencesFollowPasses()
    {
        auto serveA = [&](const QString &db) {
            server->route(
                "/a",
                {200,
                 relayFeed("down", "[" + relayComponent(u"db"_s, u"DB"_s, db) + "," +
                                       relayComponent(u"web"_s, u"Web"_s, u"degraded"_s) + "]"),
                 {}});
        };
        serveA(u"down"_s);
        server->route("/b", {200, relayFeed("degraded"), {}});
        makeStore(line(u"A"_s, "/a?") + u'\n' + line(u"B"_s, "/b?"));
        const QString a = u"127.0.0.1:%1/a"_s.arg(server->port());
        const QString b = u"127.0.0.1:%1/b"_s.arg(server->port());
        QDateTime clock = QDateTime::fromString(u"2026-11-16T17:00:00Z"_s, Qt::ISODate);
        store->setClock([&] { return clock; });

        silence->silence(a + u"::db"_s, SilenceDuration::untilResolved, clock);
        silence->silence(a + u"::web"_s, SilenceDuration::twoHours, clock);
        silence->silence(b, SilenceDuration::untilResolved, clock);
        silence->silence(u"elsewhere"_s, SilenceDuration::untilResolved, clock);
        pass();
        QCOMPARE(environment->recorder->history().byId.value(a).last().healthRaw, u"operational"_s);
        QCOMPARE(environment->recorder->history().byId.value(b).last().healthRaw, u"degraded"_s);
        QVERIFY(!silence->entries().contains(u"elsewhere"_s));

        // Two hours on, the dated silence no longer counts and goes at the end of the pass.
        clock = clock.addSecs(7200);
        serveA(u"operational"_s);
        server->route("/b", {200, relayFeed("operational"), {}});
        pass();
        QVERIFY(silence->entries().isEmpty());
        QCOMPARE(environment->recorder->history().byId.value(a).size(), 2);
        QCOMPARE(environment->recorder->history().byId.value(a).last().healthRaw, u"degraded"_s);

        const CheckHistory stored = CheckHistory::load(*defaults);
        QCOMPARE(stored, environment->recorder->history());
    }

    // Two programs passing over one settings file (the watcher and lanternic-check, say) keep
    // each other's ticks and kinds.
    void twoProgramsOnOneFileKeepEveryTick()
    {
        server->route("/feed", {200, relayFeed("operational"), {}});
        makeStore(line(u"F"_s, "/feed?"));
        defaults->sync();
        QSettings otherFile(defaults->fileName(), QSettings::IniFormat);
        AppEnvironment other(otherFile, {}, AppEnvironment::LaunchPass::none);
        for (int i = 0; i < 5; ++i) {
            pass();
            bool done = false;
            other.store->refresh([&] { done = true; });
            QVERIFY(QTest::qWaitFor([&] { return done; }, 20'000));
        }
        kinds->record(u"one.example"_s, SourceKind::atlassian);
        other.kinds.record(u"two.example"_s, SourceKind::incidentio);
        defaults->sync();
        otherFile.sync();

        QSettings reread(defaults->fileName(), QSettings::IniFormat);
        const CheckHistory stored = CheckHistory::load(reread);
        QCOMPARE(stored.byId.size(), 1);
        QCOMPARE(stored.byId.begin()->size(), 10);
        QCOMPARE(SourceKindStore(reread).cache().keys().size(), 2);
    }

    // A silent server, and a new host whose probe hangs, hold back no other source: results
    // replace their rows as they come, and the silent one gives up at the first-byte limit.
    void noSourceWaitsForAnother()
    {
        limits.firstByteTimeout = std::chrono::milliseconds(1500);
        limits.probeLimit = std::chrono::milliseconds(1000);
        server->route("/ok", {200, relayFeed("operational"), {}, false, 200});
        LoopbackServer::Response silent{200, "{}", {}};
        silent.silent = true;
        server->route("/silent", silent);
        server->route("/proxy/hang.example", silent);
        makeStore(line(u"Silent"_s, "/silent?") + u"\nNew=hang.example\n"_s +
                  line(u"Ok"_s, "/ok?"));
        QSignalSpy finished(store, &LanternicStore::passFinished);
        QElapsedTimer clock;
        clock.start();
        store->refresh();
        QTRY_COMPARE_WITH_TIMEOUT(store->results()[2].health, Health::operational, 1000);
        QVERIFY(store->isRefreshing());
        QCOMPARE(store->results()[0].detail, u"Checking\u2026"_s);
        QVERIFY(finished.wait(10'000));
        QVERIFY(clock.elapsed() < 4000);
        QCOMPARE(store->results()[0].error, u"No answer within 1.5 s"_s);
        QCOMPARE(store->results()[0].health, Health::unknown);
        QCOMPARE(finished.size(), 1);
        for (const SourceResult &result : store->results())
            QCOMPARE(environment->recorder->history().byId.value(result.id).size(), 1);
    }

    // With the preference on, every Statuspage source reads maintenance as operational.
    void maintenanceCanCountAsOperational()
    {
        server->route("/api/v2/summary.json",
                      {200,
                       R"({"status":{"indicator":"maintenance"},"components":[)"
                       R"({"id":"db","name":"DB","status":"under_maintenance"}]})",
                       {}});
        makeStore(u"S=status.example.com"_s);
        pass();
        QCOMPARE(resultLines(), QStringList{store->results().first().id + u" degraded"_s});
        settings->setTreatMaintenanceAsOperational(true);
        pass();
        QCOMPARE(resultLines(), QStringList{store->results().first().id + u" operational"_s});
    }

    // A pass that starts while a check is in flight takes its result instead of asking again.
    void aRunningCheckIsNotFetchedTwice()
    {
        server->route("/slow", {200, relayFeed("degraded"), {}, false, 500});
        makeStore(line(u"Slow"_s, "/slow?"));
        int finished = 0;
        store->refresh([&] { ++finished; });
        QTest::qWait(100);
        store->refresh([&] { ++finished; });
        QTRY_COMPARE_WITH_TIMEOUT(finished, 2, 10'000);
        QCOMPARE(server->requests().size(), 1);
        QCOMPARE(store->results().first().health, Health::degraded);
        QCOMPARE(environment->recorder->history().byId.begin()->size(), 1);
    }

    // The health log: the time the app was not running is a gap, found from the last tick of
    // the check history; a pass while offline stops watching; unchanged passes write nothing.
    void healthLogGapsAcrossStartsAndOffline()
    {
        server->route("/feed", {200, relayFeed("operational"), {}});
        makeStore(line(u"F"_s, "/feed?"));
        QDateTime clock = QDateTime::fromString(u"2026-11-16T12:00:00Z"_s, Qt::ISODate);
        store->setClock([&] { return clock; });
        pass();
        const QString id = store->results().first().id;
        clock = clock.addSecs(120);
        const QVariant stored = defaults->value(u"Lanternic.healthLog"_s);
        defaults->remove(u"Lanternic.healthLog"_s);
        pass();
        QVERIFY2(!defaults->contains(u"Lanternic.healthLog"_s), "nothing changed, nothing written");
        defaults->setValue(u"Lanternic.healthLog"_s, stored);

        // Started again five hours later: watching stopped at the last tick.
        environment.reset();
        makeStore(line(u"F"_s, "/feed?"));
        const QDateTime lastTick = clock;
        clock = clock.addSecs(5 * 3600);
        store->setClock([&] { return clock; });
        pass();
        QList<HealthChange> changes = environment->recorder->healthLog().byId.value(id);
        QCOMPARE(changes.size(), 3);
        QCOMPARE(changes[1], (HealthChange{lastTick, std::nullopt, {}}));
        QCOMPARE(changes[2].health, std::optional(Health::operational));

        store->setOffline(true);
        clock = clock.addSecs(120);
        pass();
        QVERIFY(!environment->recorder->healthLog().byId.value(id).last().health);
        QCOMPARE(HealthLog::load(*defaults)->byId.value(id).size(), 4);

        // What is stored but cannot be read at all is not saved over.
        defaults->setValue(u"Lanternic.healthLog"_s, QByteArray("not a log"));
        store->setOffline(false);
        clock = clock.addSecs(120);
        pass();
        QCOMPARE(environment->recorder->healthLog().byId.value(id).size(), 5);
        QCOMPARE(defaults->value(u"Lanternic.healthLog"_s), QVariant(QByteArray("not a log")));
    }

    // Overlapping passes: the one that started later wins, even when it finishes first, and a
    // source removed meanwhile does not come back with the earlier one.
    void aStalePassIsDropped()
    {
        server->route("/old", {200, relayFeed("down"), {}, false, 300});
        server->route("/new", {200, relayFeed("operational"), {}});
        makeStore(line(u"Old"_s, "/old?"));
        QSignalSpy published(store, &LanternicStore::passFinished);
        int finished = 0;
        store->refresh([&] { ++finished; });
        QTest::qWait(50);
        settings->setSourcesText(line(u"New"_s, "/new?"));
        store->refresh([&] { ++finished; });
        QTRY_COMPARE_WITH_TIMEOUT(finished, 1, 10'000);
        QVERIFY(store->isRefreshing());
        QTRY_COMPARE_WITH_TIMEOUT(finished, 2, 10'000);
        QVERIFY(!store->isRefreshing());
        QCOMPARE(resultLines(), QStringList{store->results().first().id + u" operational"_s});
        QCOMPARE(store->results().first().name, u"New"_s);
        QCOMPARE(published.size(), 1);
        QCOMPARE(environment->recorder->history().byId.size(), 1);
    }

    void startingTwiceLeavesOneLoop()
    {
        server->route("/feed", {200, relayFeed("operational"), {}});
        makeStore(line(u"F"_s, "/feed?"));
        QSignalSpy passes(store, &LanternicStore::passFinished);
        store->start();
        store->start();
        // Of the two first passes, one that finishes after the other is dropped.
        QTRY_VERIFY_WITH_TIMEOUT(!passes.isEmpty() && !store->isRefreshing(), 10'000);
        const qsizetype published = passes.size();
        QTest::qWait(200);
        QCOMPARE(passes.size(), published);
        QVERIFY(!store->isRefreshing());
        QCOMPARE(store->pollInterval(), std::chrono::minutes(2));
        settings->setRefreshIntervalMinutes(-3);
        QCOMPARE(store->pollInterval(), std::chrono::minutes(1));
        settings->setRefreshIntervalMinutes(2147483647);
        QCOMPARE(store->pollInterval(), std::chrono::hours(1));
    }

    void reconnectsAndWakesCheckAgain()
    {
        server->route("/feed", {200, relayFeed("operational"), {}, false, 300});
        makeStore(line(u"F"_s, "/feed?"));
        FakeSystemEvents events;
        Recheck recheck(*store, events, std::chrono::milliseconds(50));
        QSignalSpy passes(store, &LanternicStore::passFinished);
        auto passesAfter = [&](auto cause) {
            passes.clear();
            cause();
            QTest::qWait(1000);
            return passes.size();
        };
        QCOMPARE(passesAfter([&] { Q_EMIT events.reconnected(); }), 1);
        QCOMPARE(passesAfter([&] {
                     Q_EMIT events.reconnected();
                     Q_EMIT events.woke();
                 }),
                 1);
        // Another wake while the pass the first one started still runs (it takes 300 ms).
        QCOMPARE(passesAfter([&] {
                     Q_EMIT events.woke();
                     QTimer::singleShot(150, [&] { Q_EMIT events.woke(); });
                 }),
                 1);
        QVERIFY(!store->isOffline());
        events.setOffline(true);
        QVERIFY(store->isOffline());
    }

    void editingTheSourcesChecksOnceTheTextSettles()
    {
        server->route("/feed", {200, relayFeed("operational"), {}});
        makeStore(QString());
        QSignalSpy passes(store, &LanternicStore::passFinished);
        settings->setSourcesText(u"F"_s);
        QTest::qWait(1000);
        settings->setSourcesText(line(u"F"_s, "/feed?"));
        // Past two seconds after the first edit, but not after the last.
        QTest::qWait(1500);
        QCOMPARE(passes.size(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(passes.size(), 1, 5'000);
        QCOMPARE(store->results().size(), 1);
        QCOMPARE(store->results().first().health, Health::operational);
    }

    // What SIGHUP does to the watcher: the file another program wrote is read, and checked at
    // once, once.
    void reloadReadsTheFileAndChecksAtOnce()
    {
        server->route("/a", {200, relayFeed("operational"), {}});
        server->route("/b", {200, relayFeed("degraded"), {}});
        makeStore(line(u"A"_s, "/a?"));
        QSettings other(defaults->fileName(), QSettings::IniFormat);
        other.setValue(u"Lanternic.sources"_s, line(u"B"_s, "/b?"));
        other.setValue(u"Lanternic.refreshIntervalMinutes"_s, 5);
        other.setValue(u"Lanternic.quietHours"_s, true);
        other.sync();
        QSignalSpy passes(store, &LanternicStore::passFinished);
        environment->reload();
        QCOMPARE(settings->refreshIntervalMinutes(), 5);
        QVERIFY(environment->notificationRules.quietHours().enabled);
        QVERIFY(passes.wait(10'000));
        QCOMPARE(resultLines(), QStringList{u"127.0.0.1:%1/b degraded"_s.arg(server->port())});
        QTest::qWait(2500);
        QCOMPARE(passes.size(), 1);
    }

    void environmentRekeysAndRunsTheLaunchPass()
    {
        server->route("/feed", {200, relayFeed("operational"), {}});
        const QString host = u"127.0.0.1"_s;
        defaults->setValue(u"Lanternic.sources"_s, line(u"F"_s, "/feed?"));
        defaults->setValue(u"Lanternic.silences"_s,
                           QByteArray(R"({")" + host.toUtf8() + R"(-3::api":{"forever":{}}})"));
        AppEnvironment environment(*defaults, {}, AppEnvironment::LaunchPass::loop);
        const QString id = u"127.0.0.1:%1/feed"_s.arg(server->port());
        QCOMPARE(environment.silence.entries().keys(), QStringList{id + u"::api"_s});
        QSignalSpy finished(environment.store.get(), &LanternicStore::passFinished);
        QVERIFY(finished.wait(10'000));
        // The loop's first pass is the launch pass: no second one follows it.
        QTest::qWait(300);
        QCOMPARE(server->requests().size(), 1);
        QCOMPARE(environment.store->results().first().health, Health::operational);
    }
};

QTEST_GUILESS_MAIN(TestStore)
#include "test_store.moc"
