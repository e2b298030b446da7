#include "sources/sourcekindstore.h"
#include "store/checkhistory.h"
#include "store/healthlog.h"
#include "store/notificationrules.h"
#include "store/silencestore.h"
#include "store/storedjson.h"
#include "support/fixtures.h"

#include <QJsonDocument>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

namespace {

QDateTime at(const char *iso)
{
    return QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate);
}

} // namespace

class TestPersistence : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    std::unique_ptr<QSettings> defaults;

private Q_SLOTS:
    void init() { defaults = freshSettings(dir); }

    void silencesSaveOnEveryChange()
    {
        SilenceStore store(*defaults);
        QSignalSpy changed(&store, &SilenceStore::entriesChanged);
        const QDateTime now = at("2026-11-16T17:00:00Z");
        store.silence(u"example"_s, SilenceDuration::untilResolved, now);
        store.silence(u"example"_s, SilenceDuration::twoHours, now);
        store.silence(u"example::api"_s, SilenceDuration::untilResolved, now);
        store.silence(u"other"_s, SilenceDuration::forever, now);
        const QByteArray stored =
            R"({"example":{"date":{"_0":816548400.0}},"example::api":{"resolved":{}},"other":{"forever":{}}})";
        QCOMPARE(defaults->value(u"Lanternic.silences"_s).toByteArray(), stored);
        QCOMPARE(SilenceStore(*defaults).entries(), store.entries());
        store.unsilence(u"example"_s);
        QCOMPARE(changed.size(), 5);
        QVERIFY(!SilenceStore(*defaults).entries().contains(u"example"_s));
    }

    // The tray and a watcher on one settings file: each writes its own change into what is
    // stored now, and reads the other's.
    void silencesOfTwoPrograms()
    {
        QSettings watcherSettings(defaults->fileName(), QSettings::IniFormat);
        SilenceStore tray(*defaults);
        SilenceStore watcher(watcherSettings);
        const QDateTime now = at("2026-11-16T17:00:00Z");
        tray.silence(u"github"_s, SilenceDuration::twoHours, now);
        watcher.prune({}, {}, now);
        watcher.silence(u"slack"_s, SilenceDuration::untilResolved, now);
        const auto stored = [&] {
            defaults->sync();
            watcherSettings.sync();
            QSettings file(defaults->fileName(), QSettings::IniFormat);
            QStringList ids = SilenceStore(file).entries().keys();
            ids.sort();
            return ids;
        };
        QCOMPARE(stored(), (QStringList{u"github"_s, u"slack"_s}));
        tray.prune({u"slack"_s}, {}, now.addSecs(3 * 3600));
        QCOMPARE(tray.entries().keys(), QStringList{u"slack"_s});
        QCOMPARE(stored(), QStringList{u"slack"_s});
    }

    void storedKeysSurviveAnyText()
    {
        const SilenceStore::Entries entries{
            {u"quote\" back\\slash\nline\ttab\u0001 caf\u00e9 \u2014 \U0001F600"_s,
             SilenceUntil::forever()},
            // Lone surrogates, which UTF-8 cannot hold, stay distinct.
            {u"a"_s + QChar(0xd800), SilenceUntil::forever()},
            {u"a"_s + QChar(0xdc00), SilenceUntil::forever()},
            {u"round"_s, SilenceUntil::until(fromReferenceSeconds(900000000))}};
        const QByteArray stored = SilenceStore::encode(entries);
        QVERIFY(QJsonDocument::fromJson(stored).isObject());
        QVERIFY2(stored.contains("900000000.0"), stored.constData());
        QCOMPARE(SilenceStore::decode(stored), entries);
    }

    void farFutureSilencesStaySilences()
    {
        for (double seconds : {9.2e15, 1e300}) {
            const QByteArray stored =
                "{\"x\":{\"date\":{\"_0\":" + QByteArray::number(seconds, 'g', 17) + "}}}";
            defaults->setValue(u"Lanternic.silences"_s, stored);
            SilenceStore loaded(*defaults);
            QVERIFY(loaded.isSilenced(u"x"_s, at("2026-11-16T17:00:00Z")));
        }
    }

    // The log records changes only, and gaps where readings were too far apart or the network
    // went; uptime leaves gaps and unknown time out of both sides, and cuts troubles to the
    // window.
    void healthLog()
    {
        const QDateTime t0 = at("2026-11-01T00:00:00Z");
        const auto hours = [&](double h) { return t0.addSecs(qint64(h * 3600)); };
        HealthLog log;
        QVERIFY(log.record(u"s"_s, Health::operational, {}, hours(0), std::nullopt));
        QVERIFY(!log.record(u"s"_s, Health::operational, {}, hours(0.5), hours(0)));
        QVERIFY(log.record(u"s"_s, Health::down, {u"Outage"_s}, hours(10), hours(9.9)));
        QVERIFY(log.record(u"s"_s, Health::degraded, {u"Outage"_s}, hours(11), hours(10.9)));
        QVERIFY(log.record(u"s"_s, Health::operational, {}, hours(12), hours(11.9)));
        // Asleep from 19.5 h to 22 h: the reading at 22 h comes long after the one before.
        QVERIFY(log.record(u"s"_s, Health::operational, {}, hours(22), hours(19.5)));
        QVERIFY(log.record(u"s"_s, Health::unknown, {}, hours(30), hours(29.9)));
        QVERIFY(log.record(u"s"_s, Health::operational, {}, hours(31), hours(30.9)));
        QVERIFY(log.stop(u"s"_s, hours(40)));
        QVERIFY(!log.stop(u"s"_s, hours(41)));
        QCOMPARE(log.byId[u"s"_s].size(), 9);

        const Uptime window = log.uptime(u"s"_s, hours(10.5), hours(35));
        // Down 0.5 h and degraded 1 h, operational 7.5 h + 8 h + 4 h; 2.5 h asleep and 1 h
        // unknown left out.
        QCOMPARE(window.watchedSeconds, qint64(21 * 3600));
        QCOMPARE(*window.share, 19.5 / 21.0);
        QCOMPARE(window.troubles.size(), 1);
        const Trouble &trouble = window.troubles.first();
        QCOMPARE(trouble.start, hours(10.5));
        QCOMPARE(trouble.end, std::optional(hours(12)));
        QCOMPARE(trouble.worst, Health::down);
        QCOMPARE(trouble.incidents, QStringList{u"Outage"_s});
        // A window that ends inside a trouble leaves it going on.
        QCOMPARE(log.uptime(u"s"_s, t0, hours(10.75)).troubles.first().end, std::nullopt);
        QCOMPARE(log.uptime(u"other"_s, t0, hours(35)).share, std::nullopt);

        // 90 days on, what lies wholly before the window goes, and the state it starts in stays.
        const QDateTime later = hours(24 * 90 + 35);
        QVERIFY(log.trim(later));
        QCOMPARE(log.byId[u"s"_s].size(), 2);
        QVERIFY(!log.trim(later));

        // Stored and read back.
        log.save(*defaults);
        QCOMPARE(HealthLog::load(*defaults), std::optional(log));
        defaults->remove(u"Lanternic.healthLog"_s);
        QCOMPARE(HealthLog::load(*defaults), std::optional(HealthLog()));

        // A clock stepped back keeps the log in order; the reading counts from the last change.
        QVERIFY(log.record(u"s"_s, Health::down, {}, hours(35), hours(34.9)));
        QCOMPARE(log.byId[u"s"_s].last().at, hours(40));
    }

    // What cannot be read is skipped entry by entry; only a document that is no log at all is
    // nothing, which its writers then leave alone.
    void healthLogDecoding_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<QString>("read"); // per source: seconds and word, or "none"
        QTest::newRow("a word of a newer version")
            << QByteArray(R"({"byId":{"s":[[1,"down"],[2,"sideways"],[3,"operational"]]}})")
            << u"s: 1 down, 3 operational"_s;
        QTest::newRow("a clock stepped back")
            << QByteArray(R"({"byId":{"s":[[5,"down"],[2,"operational"],[9,"stopped"]]}})")
            << u"s: 2 operational, 5 down, 9 stopped"_s;
        QTest::newRow("broken entries and sources")
            << QByteArray(R"({"byId":{"s":[[1],"x",[null,"down"],[4,"down",["A",7]]],"t":5}})")
            << u"s: 4 down A"_s;
        QTest::newRow("not a log") << QByteArray(R"({"byId":[]})") << u"none"_s;
        QTest::newRow("not JSON") << QByteArray("not json") << u"none"_s;
    }

    void healthLogDecoding()
    {
        QFETCH(QByteArray, stored);
        defaults->setValue(u"Lanternic.healthLog"_s, stored);
        const std::optional<HealthLog> log = HealthLog::load(*defaults);
        QStringList read;
        for (auto it = log ? log->byId.constBegin()
                           : QHash<QString, QList<HealthChange>>::const_iterator();
             log && it != log->byId.constEnd(); ++it) {
            QStringList changes;
            for (const HealthChange &change : it.value()) {
                changes.append((QString::number(referenceSeconds(change.at)) + u' ' +
                                (change.health ? rawValue(*change.health) : u"stopped"_s) + u' ' +
                                change.incidents.join(u','))
                                   .trimmed());
            }
            read.append(it.key() + u": "_s + changes.join(u", "_s));
        }
        QTEST(log ? read.join(u"; "_s) : u"none"_s, "read");
    }

    // However a page behaves, the log of one source stays small: renaming the incident every
    // pass is told a few times a stretch, and flapping for months is cut to the byte budget.
    void healthLogBounds()
    {
        const QDateTime t0 = at("2026-11-01T00:00:00Z");
        HealthLog log;
        for (int pass = 0; pass < 20000; ++pass) {
            const QDateTime now = t0.addSecs(60 * pass);
            log.record(u"renamed"_s, Health::down, {u"Incident %1"_s.arg(pass)}, now,
                       now.addSecs(-60));
            log.record(u"flapping"_s, pass % 2 ? Health::down : Health::degraded,
                       {QString(200, QChar(u'a' + pass % 26))}, now, now.addSecs(-60));
        }
        QCOMPARE(log.byId[u"renamed"_s].size(), HealthLog::namedChangesPerStretch);
        log.save(*defaults);
        QVERIFY(defaults->value(u"Lanternic.healthLog"_s).toByteArray().size() <
                HealthLog::bytesPerSource * 2 + 4096);
        QVERIFY(log.byId[u"flapping"_s].size() < 400);
        // The last changes are the ones kept.
        QCOMPARE(log.byId[u"flapping"_s].last().at, t0.addSecs(60 * 19999));
        const Uptime uptime = log.uptime(u"renamed"_s, t0, t0.addDays(30));
        QCOMPARE(uptime.troubles.size(), 1);
        QCOMPARE(uptime.troubles.first().incidents.size(), HealthLog::namedChangesPerStretch);
    }

    void silencesDecoding_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::newRow("two cases") << QVariant(QByteArray(R"({"x":{"resolved":{},"forever":{}}})"));
        QTest::newRow("no case") << QVariant(
            QByteArray(R"({"x":{"later":{}},"y":{"forever":{}}})"));
        QTest::newRow("date as text") << QVariant(QByteArray(R"({"x":{"date":{"_0":"soon"}}})"));
        QTest::newRow("not an object") << QVariant(QByteArray(R"({"x":"forever"})"));
        QTest::newRow("not JSON") << QVariant(QByteArray("not json"));
        QTest::newRow("a number") << QVariant(42);
    }

    // Unreadable silences are none, and are left as they are until a pass replaces them.
    void silencesDecoding()
    {
        QFETCH(QVariant, stored);
        defaults->setValue(u"Lanternic.silences"_s, stored);
        SilenceStore store(*defaults);
        QVERIFY(store.entries().isEmpty());
        QCOMPARE(defaults->value(u"Lanternic.silences"_s), stored);
        store.prune({}, {}, at("2026-11-16T17:00:00Z"));
        QCOMPARE(defaults->value(u"Lanternic.silences"_s).toByteArray(), QByteArray("{}"));
    }

    void pruning()
    {
        SilenceStore store(*defaults);
        const QDateTime now = at("2026-11-16T17:00:00Z");
        for (const char *id : {"down", "down::api", "fine", "fine::api", "always", "failed::api"}) {
            const QString key = QString::fromLatin1(id);
            store.silence(
                key, key == "always"_L1 ? SilenceDuration::forever : SilenceDuration::untilResolved,
                now);
        }
        // Nothing is known of the components of a source whose check failed.
        store.prune({u"down"_s, u"down::api"_s}, {u"failed"_s}, now);
        QStringList kept = store.entries().keys();
        kept.sort();
        QCOMPARE(kept, (QStringList{u"always"_s, u"down"_s, u"down::api"_s, u"failed::api"_s}));
        store.prune({u"down"_s, u"down::api"_s}, {}, now);
        QVERIFY(!store.entries().contains(u"failed::api"_s));

        defaults->remove(u"Lanternic.silences"_s);
        store.prune({u"down"_s, u"down::api"_s}, {}, now);
        QVERIFY2(!defaults->contains(u"Lanternic.silences"_s), "nothing removed, nothing written");
    }

    void rekeying()
    {
        const QByteArray stored = R"({"H-0":{"forever":{}},"H-12::api":{"resolved":{}},)"
                                  R"("H-x":{"forever":{}},"H-":{"forever":{}},"H":{"forever":{}},)"
                                  R"("github::web":{"forever":{}},"Z-2":{"forever":{}}})";
        defaults->setValue(u"Lanternic.silences"_s, stored);
        SilenceStore store(*defaults);
        store.rekey({{u"github"_s, u"H"_s}, {u"other"_s, u"H"_s}});
        QStringList keys = store.entries().keys();
        keys.sort();
        QCOMPARE(keys, (QStringList{u"H"_s, u"H-"_s, u"H-x"_s, u"Z-2"_s, u"github"_s,
                                    u"github::api"_s, u"github::web"_s}));
        QCOMPARE(store.entries().value(u"github::api"_s), SilenceUntil::resolved());
        QVERIFY(defaults->value(u"Lanternic.silences"_s).toByteArray() != stored);
    }

    // Rules are stored like the silences, move with them, and bad stored values are no rules.
    void notificationRules()
    {
        NotificationRules rules(*defaults);
        QSignalSpy changed(&rules, &NotificationRules::changed);
        rules.setRule(u"H-2"_s, NotifyRule::outagesOnly);
        rules.setRule(u"H-2::api"_s, NotifyRule::never);
        rules.setRule(u"other"_s, NotifyRule::never);
        rules.setRule(u"other"_s, NotifyRule::all);
        QCOMPARE(defaults->value(u"Lanternic.notificationRules"_s).toByteArray(),
                 QByteArray(R"({"H-2":"down","H-2::api":"none"})"));
        rules.rekey({{u"github"_s, u"H"_s}});
        QCOMPARE(NotificationRules(*defaults).entries(),
                 (NotificationRules::Entries{{u"github"_s, NotifyRule::outagesOnly},
                                             {u"github::api"_s, NotifyRule::never}}));
        QCOMPARE(changed.size(), 5);
        for (const QByteArray &bad : {QByteArray(R"({"x":"sometimes"})"), QByteArray(R"({"x":1})"),
                                      QByteArray("[]"), QByteArray("not json")}) {
            defaults->setValue(u"Lanternic.notificationRules"_s, bad);
            QVERIFY2(NotificationRules(*defaults).entries().isEmpty(), bad.constData());
        }

        // Quiet hours across midnight, local time; a pause; both survive a restart.
        const auto local = [](int hour, int minute) {
            return QDateTime(QDate(2026, 11, 24), QTime(hour, minute));
        };
        QVERIFY(!rules.isMuted(local(23, 0)));
        rules.setQuietHours({true, QTime(22, 30), QTime(7, 0)});
        for (const auto &[hour, minute, muted] : {std::tuple{22, 29, false},
                                                  {22, 30, true},
                                                  {3, 0, true},
                                                  {6, 59, true},
                                                  {7, 0, false}})
            QCOMPARE(NotificationRules(*defaults).isMuted(local(hour, minute)), muted);
        rules.pauseUntil(local(13, 0));
        QVERIFY(NotificationRules(*defaults).isMuted(local(12, 59)));
        QVERIFY(!NotificationRules(*defaults).isMuted(local(13, 0)));
        defaults->setValue(u"Lanternic.quietHoursStart"_s, u"25:99"_s);
        QCOMPARE(NotificationRules(*defaults).quietHours().start, QTime(22, 0));
    }

    void historyStoredForm()
    {
        CheckHistory history;
        history.record(u"example"_s, Health::operational, at("2026-11-16T17:00:00Z"));
        history.record(u"example"_s, Health::degraded, at("2026-11-16T17:00:30.500Z"));
        const QByteArray stored =
            R"({"byId":{"example":[{"date":816541200.0,"healthRaw":"operational"},{"date":816541230.5,"healthRaw":"degraded"}]}})";
        QCOMPARE(history.encode(), stored);
        history.save(*defaults);
        QCOMPARE(CheckHistory::load(*defaults), history);
    }

    void historyLoading_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<int>("ids");
        QTest::newRow("unknown health kept")
            << QVariant(
                   QByteArray(R"({"byId":{"a":[{"date":1,"healthRaw":"fine","x":2}],"b":[]}})"))
            << 2;
        QTest::newRow("date as text")
            << QVariant(QByteArray(R"({"byId":{"a":[{"date":"1","healthRaw":"down"}]}})")) << 0;
    }

    void historyLoading()
    {
        QFETCH(QVariant, stored);
        defaults->setValue(u"Lanternic.checkHistory"_s, stored);
        QTEST(int(CheckHistory::load(*defaults).byId.size()), "ids");
    }

    void oversizedStoredHistoryIsTrimmedOnTheNextRecord()
    {
        CheckHistory history;
        for (int i = 0; i < 45; ++i)
            history.byId[u"a"_s].append({at("2026-11-16T17:00:00Z").addSecs(i), u"down"_s});
        history.save(*defaults);
        CheckHistory loaded = CheckHistory::load(*defaults);
        QCOMPARE(loaded.byId.value(u"a"_s).size(), 45);
        loaded.record(u"a"_s, Health::operational, at("2026-11-17T00:00:00Z"));
        QCOMPARE(loaded.byId.value(u"a"_s).size(), 40);
        QCOMPARE(loaded.byId.value(u"a"_s).first().date, at("2026-11-16T17:00:06Z"));
    }

    void kindCache_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<int>("entries");
        QTest::newRow("unknown kinds dropped")
            << QVariant(
                   QVariantMap{{u"a.example"_s, u"incidentio"_s}, {u"b.example"_s, u"other"_s}})
            << 1;
        QTest::newRow("a number spoils the whole map")
            << QVariant(QVariantMap{{u"a.example"_s, u"incidentio"_s}, {u"b.example"_s, 3}}) << 0;
        QTest::newRow("not a map") << QVariant(42) << 0;
    }

    void kindCache()
    {
        QFETCH(QVariant, stored);
        defaults->setValue(u"Lanternic.sourceKinds"_s, stored);
        SourceKindStore store(*defaults);
        QTEST(int(store.cache().size()), "entries");
        // Recording writes the whole cache through, by host in lower case.
        store.record(u"Status.Example.COM"_s, SourceKind::incidentio);
        QCOMPARE(SourceKindStore(*defaults).cache().value(u"status.example.com"_s),
                 SourceKind::incidentio);
        QCOMPARE(defaults->value(u"Lanternic.sourceKinds"_s).toMap().size(), store.cache().size());
    }
};

QTEST_GUILESS_MAIN(TestPersistence)
#include "test_persistence.moc"
