#include "present/changenotice.h"
#include "present/displaytext.h"
#include "present/forwardevent.h"
#include "present/jsonwriter.h"
#include "present/resultjson.h"
#include "present/sourcelines.h"
#include "support/fixtures.h"
#include "support/results.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace lanternic;
using namespace results;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(lanternic::SourceResult)
Q_DECLARE_METATYPE(lanternic::ForwardEvent::Event)

// What notifications and time texts say of results.
class TestPresent : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    std::unique_ptr<QSettings> defaults;
    std::unique_ptr<SilenceStore> silence;

private Q_SLOTS:
    // What an ntfy message carries in its headers: text beyond ASCII as an RFC 2047 word,
    // priority and tag by what changed, and a link only to a web page.
    void ntfyHeaders_data()
    {
        QTest::addColumn<ForwardEvent::Event>("event");
        QTest::addColumn<QList<QByteArray>>("headers"); // Title, Priority, Tags, Click
        const QDateTime at = QDateTime::fromString(u"2026-11-16T17:00:00Z"_s, Qt::ISODate);
        const QUrl page(u"https://status.example.com"_s);
        QTest::newRow("down") << ForwardEvent::Event{u"s"_s,
                                                     u"GitHub"_s,
                                                     page,
                                                     Health::operational,
                                                     Health::down,
                                                     u"GitHub is down"_s,
                                                     u"GitHub \u2014 down"_s,
                                                     {},
                                                     at}
                              << QList<QByteArray>{"GitHub is down", "5", "rotating_light",
                                                   page.toEncoded()};
        QTest::newRow("beyond ASCII, no web page")
            << ForwardEvent::Event{u"s"_s,
                                   u"Stra\u00dfe"_s,
                                   QUrl(u"ftp://x.example/"_s),
                                   Health::down,
                                   Health::degraded,
                                   u"Stra\u00dfe\n is degraded"_s,
                                   u"Stra\u00dfe \u2014 degraded"_s,
                                   {},
                                   at}
            << QList<QByteArray>{"=?UTF-8?B?" +
                                     QByteArray("Stra\xc3\x9f"
                                                "e  is degraded")
                                         .toBase64() +
                                     "?=",
                                 "4",
                                 "warning",
                                 {}};
        QList<ChangeNews::IncidentMention> many;
        for (int i = 0; i < 10; ++i)
            many.append({u"identified"_s, QString(900, QChar(u'0' + i))});
        QTest::newRow("more incidents than a message holds")
            << ForwardEvent::Event{u"s"_s,
                                   u"AWS"_s,
                                   page,
                                   Health::degraded,
                                   Health::down,
                                   u"AWS is down"_s,
                                   u"AWS \u2014 down"_s,
                                   many,
                                   at}
            << QList<QByteArray>{"AWS is down", "5", "rotating_light", page.toEncoded()};
        QTest::newRow("new incident")
            << ForwardEvent::Event{u"s"_s,
                                   u"Linear"_s,
                                   std::nullopt,
                                   Health::operational,
                                   Health::operational,
                                   u"Linear: new incident \u2014 Sync"_s,
                                   u"Investigating: Sync"_s,
                                   {{u"investigating"_s, u"Sync"_s}},
                                   at,
                                   true}
            << QList<QByteArray>{
                   "=?UTF-8?B?" + u"Linear: new incident \u2014 Sync"_s.toUtf8().toBase64() + "?=",
                   "3",
                   "loudspeaker",
                   {}};
    }

    void ntfyHeaders()
    {
        QFETCH(ForwardEvent::Event, event);
        QFETCH(QList<QByteArray>, headers);
        const ForwardEvent::Request request = ForwardEvent::ntfy(event);
        const auto header = [&](const QByteArray &name) {
            for (const auto &[key, value] : request.headers) {
                if (key == name)
                    return value;
            }
            return QByteArray();
        };
        // ntfy would make a longer message an attachment; whole lines are kept.
        QVERIFY(request.body.size() <= 4096);
        QStringList whole{event.title, event.detail};
        for (const ChangeNews::IncidentMention &incident : event.incidents)
            whole.append(ChangeNotice::incidentLine(incident));
        QVERIFY(whole.contains(QString::fromUtf8(request.body.split('\n').last())));
        QCOMPARE((QList<QByteArray>{header("Title"), header("Priority"), header("Tags"),
                                    header("Click")}),
                 headers);
    }

    // What each line became, as the settings window and lanternic-check sources tell it.
    void lineReadings()
    {
        const QHash<QString, SourceKind> kinds{{u"fal.example"_s, SourceKind::instatus}};
        QStringList told;
        for (const LineReading &reading : SourceRegistry::readLines(
                 u"Fal=fal.example\n\nnonsense line\n=x.example\nY=\nZ=https://\n"
                 u"Feed=https://f.example/x.json\nAgain=https://f.example/x.json\nNew=n.example\n"
                 u"Old=ftp://example.com/status"_s,
                 kinds))
            told.append(SourceLines::describe(reading));
        QCOMPARE(
            told,
            (QStringList{
                u"line 1: Fal \u2192 https://fal.example/summary.json (Instatus)"_s,
                u"line 3: ignored \u2014 no \u201c=\u201d"_s, u"line 4: ignored \u2014 no label"_s,
                u"line 5: ignored \u2014 no address"_s, u"line 6: ignored \u2014 no host"_s,
                u"line 7: Feed \u2192 https://f.example/x.json (feed)"_s,
                u"line 8: Again \u2192 https://f.example/x.json (feed), the same feed as "
                u"line 7"_s,
                u"line 9: New \u2192 https://n.example/api/v2/summary.json (to be "
                u"probed)"_s,
                u"line 10: ignored \u2014 ftp:// is not supported"_s}));
        QVERIFY(!SourceRegistry::hasUsableLine(u"Old=gopher://example.com"_s));
    }

    void init()
    {
        defaults = freshSettings(dir);
        silence = std::make_unique<SilenceStore>(*defaults);
    }

    void changeNotices_data()
    {
        QTest::addColumn<QList<SourceResult>>("before");
        QTest::addColumn<QList<SourceResult>>("after");
        QTest::addColumn<QString>("notice");              // title | body, empty for none
        QTest::addColumn<QList<SourceResult>>("between"); // a pass in the middle, if any
        QTest::addColumn<QStringList>("rules");           // "id=all|down|none"
        QTest::addColumn<bool>("quiet"); // between is quiet, after is the first pass after
        const auto op = Health::operational, deg = Health::degraded, down = Health::down,
                   unk = Health::unknown;
        QTest::newRow("worse") << QList{result(u"gh"_s, op)} << QList{result(u"gh"_s, down)}
                               << u"gh is down | gh \u2014 down"_s << QList<SourceResult>{}
                               << QStringList() << false;
        QTest::newRow("recovered") << QList{result(u"gh"_s, down)} << QList{result(u"gh"_s, op)}
                                   << u"gh recovered | gh \u2014 operational"_s
                                   << QList<SourceResult>{} << QStringList() << false;
        QTest::newRow("better, not recovered")
            << QList{result(u"gh"_s, down)} << QList{result(u"gh"_s, deg)} << QString()
            << QList<SourceResult>{} << QStringList() << false;
        QTest::newRow("into unknown")
            << QList{result(u"gh"_s, op)} << QList{result(u"gh"_s, unk)} << QString()
            << QList<SourceResult>{} << QStringList() << false;
        QTest::newRow("out of unknown")
            << QList{result(u"gh"_s, unk)} << QList{result(u"gh"_s, down)} << QString()
            << QList<SourceResult>{} << QStringList() << false;
        const auto underMaintenance = [](const QString &key) {
            return ComponentStatus{u"gh::"_s + key, key.toUpper(), Health::degraded,
                                   u"under_maintenance"_s};
        };
        QTest::newRow("planned work")
            << QList{result(u"gh"_s, op, {component(u"gh"_s, u"a"_s, op)})}
            << QList{result(u"gh"_s, deg, {underMaintenance(u"a"_s)})}
            << u"gh is under maintenance | A \u2014 under maintenance"_s << QList<SourceResult>{}
            << QStringList() << false;
        QTest::newRow("new source") << QList<SourceResult>{} << QList{result(u"gh"_s, down)}
                                    << QString() << QList<SourceResult>{} << QStringList() << false;
        QTest::newRow("components, worst first, at most three")
            << QList{result(u"gh"_s, op,
                            {component(u"gh"_s, u"a"_s, op), component(u"gh"_s, u"b"_s, op),
                             component(u"gh"_s, u"c"_s, deg), component(u"gh"_s, u"d"_s, op),
                             component(u"gh"_s, u"e"_s, op)}),
                     result(u"aws"_s, deg)}
            << QList{result(u"gh"_s, down,
                            {component(u"gh"_s, u"a"_s, deg), component(u"gh"_s, u"b"_s, down),
                             component(u"gh"_s, u"c"_s, op), component(u"gh"_s, u"d"_s, deg),
                             component(u"gh"_s, u"e"_s, unk)}),
                     result(u"aws"_s, op)}
            << u"gh is down | B \u2014 down\nA \u2014 degraded\nD \u2014 degraded\nand 2 more"_s
            << QList<SourceResult>{} << QStringList() << false;
        const auto gh = [](Health health) { return result(u"gh"_s, health); };
        const auto ghWith = [](Health health, Health a) {
            return result(u"gh"_s, health, {component(u"gh"_s, u"a"_s, a)});
        };
        QTest::newRow("degraded, unreachable, down")
            << QList{gh(deg)} << QList{gh(down)} << u"gh is down | gh \u2014 down"_s
            << QList{failed(u"gh"_s)} << QStringList() << false;
        QTest::newRow("down, asleep, operational")
            << QList{gh(down)} << QList{gh(op)} << u"gh recovered | gh \u2014 operational"_s
            << QList{failed(u"gh"_s)} << QStringList() << false;
        QTest::newRow("components through a failed check")
            << QList{ghWith(op, op)} << QList{ghWith(down, down)} << u"gh is down | A \u2014 down"_s
            << QList{failed(u"gh"_s)} << QStringList() << false;
        QTest::newRow("worse, with an incident")
            << QList{gh(op)} << QList{withIncident(gh(down), u"1"_s, u"Packages"_s)}
            << u"gh is down | Investigating: Packages\ngh \u2014 down"_s << QList<SourceResult>{}
            << QStringList() << false;
        QTest::newRow("an incident on an operational source")
            << QList{gh(op)} << QList{withIncident(gh(op), u"1"_s, u"Packages"_s)}
            << u"gh: new incident \u2014 Packages | Investigating: Packages"_s
            << QList<SourceResult>{} << QStringList() << false;
        QTest::newRow("an incident seen before, and one seen through a failed check")
            << QList{withIncident(gh(op), u"1"_s, u"Packages"_s)}
            << QList{withIncident(gh(op), u"1"_s, u"Packages"_s)} << QString()
            << QList{failed(u"gh"_s)} << QStringList() << false;

        // The user's rules: a component's own, or else its source's.
        const auto ghAB = [](Health health, Health a, Health b) {
            return result(u"gh"_s, health,
                          {component(u"gh"_s, u"a"_s, a), component(u"gh"_s, u"b"_s, b)});
        };
        QTest::newRow("never") << QList{gh(op)} << QList{gh(down)} << QString()
                               << QList<SourceResult>{} << QStringList{u"gh=none"_s} << false;
        QTest::newRow("outages only: degraded is no news")
            << QList{gh(op)} << QList{gh(deg)} << QString() << QList<SourceResult>{}
            << QStringList{u"gh=down"_s} << false;
        QTest::newRow("outages only: down")
            << QList{gh(deg)} << QList{gh(down)} << u"gh is down | gh \u2014 down"_s
            << QList<SourceResult>{} << QStringList{u"gh=down"_s} << false;
        QTest::newRow("outages only: recovery from down")
            << QList{gh(down)} << QList{gh(op)} << u"gh recovered | gh \u2014 operational"_s
            << QList<SourceResult>{} << QStringList{u"gh=down"_s} << false;
        QTest::newRow("outages only: no new-incident news")
            << QList{gh(op)} << QList{withIncident(gh(op), u"1"_s, u"Packages"_s)} << QString()
            << QList<SourceResult>{} << QStringList{u"gh=down"_s} << false;
        QTest::newRow("a component's own rule over its source's")
            << QList{ghAB(op, op, op)} << QList{ghAB(down, down, down)}
            << u"gh is down | B \u2014 down"_s << QList<SourceResult>{}
            << QStringList{u"gh=none"_s, u"gh::b=all"_s} << false;

        // Quiet hours: nothing during them, one summary after.
        const auto named = [](const QString &id, Health health) { return result(id, health); };
        QTest::newRow("while quiet: down and recovered, another degraded, one unchanged")
            << QList{named(u"GitHub"_s, op), named(u"Slack"_s, op), named(u"AWS"_s, deg)}
            << QList{named(u"GitHub"_s, op), named(u"Slack"_s, deg), named(u"AWS"_s, deg)}
            << u"While quiet | GitHub went down and recovered; Slack is degraded"_s
            << QList{named(u"GitHub"_s, down), named(u"Slack"_s, op), named(u"AWS"_s, deg)}
            << QStringList() << true;
        QTest::newRow("while quiet: recovered, and worse but not back")
            << QList{named(u"a"_s, down), named(u"b"_s, op)}
            << QList{named(u"a"_s, op), named(u"b"_s, deg)}
            << u"While quiet | a recovered; b went down and is degraded now"_s
            << QList{failed(u"a"_s), named(u"b"_s, down)} << QStringList() << true;
        QTest::newRow("while quiet: back where it was, rules honoured")
            << QList{named(u"a"_s, op), named(u"b"_s, op)}
            << QList{named(u"a"_s, op), named(u"b"_s, op)} << QString()
            << QList{named(u"a"_s, op), named(u"b"_s, deg)} << QStringList{u"b=down"_s} << true;
    }

    void changeNotices()
    {
        QFETCH(QList<SourceResult>, before);
        QFETCH(QList<SourceResult>, after);
        QFETCH(QList<SourceResult>, between);
        QFETCH(QStringList, rules);
        QFETCH(bool, quiet);
        const QHash<QString, NotifyRule> words{{u"all"_s, NotifyRule::all},
                                               {u"down"_s, NotifyRule::outagesOnly},
                                               {u"none"_s, NotifyRule::never}};
        NotificationRules::Entries entries;
        for (const QString &rule : rules)
            entries.insert(rule.section(u'=', 0, 0), words.value(rule.section(u'=', 1)));
        // As the notifier sees passes: each against what was last known.
        ChangeNews::Snapshot previous = ChangeNews::snapshot(before, *silence, now, entries);
        std::optional<ChangeNews::QuietLog> log;
        if (quiet)
            log = ChangeNews::quietFrom(previous);
        if (!between.isEmpty()) {
            previous = ChangeNews::lastKnown(previous,
                                             ChangeNews::snapshot(between, *silence, now, entries));
            if (log)
                ChangeNews::record(*log, previous);
        }
        const auto last =
            ChangeNews::lastKnown(previous, ChangeNews::snapshot(after, *silence, now, entries));
        const auto notice =
            log ? ChangeNotice::afterQuiet(*log, last) : ChangeNotice::between(previous, last);
        QTEST(notice ? notice->title + u" | "_s + notice->body : QString(), "notice");
    }

    void silencedThingsNeverNotify()
    {
        const QList before{result(u"gh"_s, Health::operational),
                           result(u"aws"_s, Health::operational,
                                  {component(u"aws"_s, u"ec2"_s, Health::operational)})};
        const auto watchedBefore = ChangeNews::snapshot(before, *silence, now);
        silence->silence(u"gh"_s, SilenceDuration::twoHours, now);
        silence->silence(u"aws::ec2"_s, SilenceDuration::twoHours, now);
        const QList after{
            result(u"gh"_s, Health::down),
            result(u"aws"_s, Health::down, {component(u"aws"_s, u"ec2"_s, Health::down)})};
        const auto watchedDuring = ChangeNews::snapshot(after, *silence, now);
        QCOMPARE(ChangeNotice::between(watchedBefore, watchedDuring), std::nullopt);
        // When the silences end, what changed under them is not news either.
        const QDateTime later = now.addSecs(3 * 3600);
        QCOMPARE(ChangeNotice::between(watchedDuring, ChangeNews::snapshot(after, *silence, later)),
                 std::nullopt);
    }

    // The last check seconds ago, and a silence's time left, as the panel words them.
    void timeTexts_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("future") << qint64(-5) << u"Updated just now"_s;
        QTest::newRow("59:59") << qint64(3599) << u"Updated 59m ago"_s;
        QTest::newRow("24 h") << qint64(86400) << u"Updated 1d ago"_s;
        QTest::newRow("59 s") << qint64(59) << u"0m left"_s;
        QTest::newRow("2 d 5 h 10 m") << qint64(2 * 86400 + 5 * 3600 + 600) << u"2d 5h left"_s;
        QTest::newRow("passed") << qint64(-300) << u"0m left"_s;
    }

    void timeTexts()
    {
        QFETCH(qint64, seconds);
        QFETCH(QString, text);
        QCOMPARE(text.endsWith(u"left"_s)
                     ? DisplayText::timeLeftText(SilenceUntil::until(now.addSecs(seconds)), now)
                     : DisplayText::lastCheckText(now.addSecs(-seconds), now),
                 text);
    }

    // Reports are written directly, and must read byte for byte as QJsonDocument wrote them.
    void jsonAsQtWritesIt_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("plain") << u"127.0.0.1:8080/feed.json::abc"_s;
        QTest::newRow("quotes and backslashes") << u"a\"b\\c/"_s;
        QTest::newRow("named escapes") << u"\b\f\n\r\t"_s;
        QTest::newRow("other controls") << u"\u0001x\u001f\u007f"_s + QChar(0);
        QTest::newRow("two and three bytes") << u"caf\u00e9 \u2014 \u20ac \u2028 \ufffd"_s;
        QTest::newRow("a pair") << u"x\U0001F600y"_s;
        QTest::newRow("lone high, then a letter") << u"a"_s + QChar(0xd800) + u"b"_s;
        QTest::newRow("lone high at the end") << u"a"_s + QChar(0xdbff);
        QTest::newRow("lone low") << QString(QChar(0xdc00)) + u"z"_s;
        QTest::newRow("low before high") << QString(QChar(0xdc00)) + QChar(0xd800);
    }

    void jsonAsQtWritesIt()
    {
        QFETCH(QString, text);
        JsonWriter out;
        out.beginObject().key("a"_L1).beginArray().value(text).null().value(qint64(-42));
        out.beginObject().endObject().beginArray().endArray().endArray();
        out.key("b"_L1).textOrNull(text).endObject();
        const QJsonObject qt{
            {u"a"_s, QJsonArray{text, QJsonValue(), -42, QJsonObject(), QJsonArray()}},
            {u"b"_s, text.isEmpty() ? QJsonValue() : QJsonValue(text)}};
        QCOMPARE(out.take(), QJsonDocument(qt).toJson(QJsonDocument::Compact));
    }

    // Dates as Qt writes them, its way of converting time zones spared where it can be.
    void isoTimestamps()
    {
        QList<QDateTime> times{
            QDateTime(),
            QDateTime::fromMSecsSinceEpoch(0, Qt::UTC),
            QDateTime::fromMSecsSinceEpoch(-1, Qt::UTC),
            QDateTime::fromString(u"2024-02-29T23:59:59.999Z"_s, Qt::ISODateWithMs),
            QDateTime::fromString(u"9999-12-31T23:59:59Z"_s, Qt::ISODate),
            QDateTime::fromString(u"1969-07-20T20:17:40Z"_s, Qt::ISODate),
            QDateTime(QDate(2026, 3, 29), QTime(1, 30), Qt::OffsetFromUTC, 5400),
            QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC)};
        QRandomGenerator random(39);
        for (int i = 0; i < 2000; ++i)
            times.append(QDateTime::fromMSecsSinceEpoch(
                qint64(random.bounded(Q_INT64_C(260'000'000'000'000))), Qt::UTC));
        for (const QDateTime &time : times) {
            QCOMPARE(isoTimestamp(time), time.toUTC().toString(Qt::ISODate));
            QCOMPARE(isoTimestamp(time, Qt::ISODateWithMs),
                     time.toUTC().toString(Qt::ISODateWithMs));
        }
    }
};

QTEST_GUILESS_MAIN(TestPresent)
#include "test_present.moc"
