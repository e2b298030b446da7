#include "sources/readers/feeddocument.h"
#include "sources/readers/incidentio.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/platforms.h"
#include "sources/readers/relayfeed.h"
#include "sources/readers/statuspage.h"
#include "sources/readers/updog.h"
#include "sources/sourcecheck.h"
#include "support/fixtures.h"

#include <QDir>
#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(lanternic::JSONSource)

namespace {

JSONSource source()
{
    JSONSource source;
    source.id = u"s"_s;
    source.name = u"Source"_s;
    source.url = QUrl(u"https://feed.example/x"_s);
    source.homeURL = QUrl(u"https://home.example"_s);
    return source;
}

JSONSource treating(const QStringList &words)
{
    JSONSource s = source();
    s.treatAsOperational = QSet<QString>(words.begin(), words.end());
    return s;
}

JSONSource including(const QStringList &groups)
{
    JSONSource s = source();
    s.includeGroups = QSet<QString>(groups.begin(), groups.end());
    return s;
}

JSONSource updog(const std::optional<QString> &provider,
                 const std::optional<QString> &service = std::nullopt)
{
    JSONSource s = source();
    s.updogProvider = provider;
    s.updogService = service;
    return s;
}

// "health | detail | key=health(status), ..." with the source id prefix dropped.
QString outline(const SourceResult &result)
{
    QStringList components;
    for (const ComponentStatus &c : result.components) {
        components.append(u"%1=%2(%3)"_s.arg(c.id.toString().mid(result.id.size() + 2),
                                             rawValue(c.health), c.status));
    }
    return u"%1 | %2 | %3"_s.arg(rawValue(result.health), result.detail, components.join(u", "));
}

const QString unrecognized = u"unknown | Unrecognized status format | "_s;

QString instant(const QDateTime &time)
{
    return time.isValid() ? time.toString(Qt::ISODate) : u"-"_s;
}

// One line per incident and per maintenance window, with every field read.
QStringList news(const SourceResult &result)
{
    QStringList lines;
    for (const Incident &i : result.incidents) {
        lines.append(u"I %1 | %2 | %3 | %4 | %5 | %6 | %7 | %8"_s.arg(
            i.id, i.name, i.stage, i.impact, i.url ? i.url->toString() : u"-"_s,
            instant(i.startedAt), instant(i.updatedAt), i.update));
    }
    for (const Maintenance &m : result.maintenances) {
        lines.append(u"M %1 | %2 | %3 | %4 | %5 | %6"_s.arg(m.id, m.name, m.status,
                                                            instant(m.startsAt), instant(m.endsAt),
                                                            m.url ? m.url->toString() : u"-"_s));
    }
    return lines;
}

QByteArray rss(const QByteArray &items)
{
    return "<?xml version=\"1.0\"?><rss version=\"2.0\"><channel><title>T</title>" + items +
           "</channel></rss>";
}

// An item of a status feed; an empty link or date is left out.
QByteArray item(const QByteArray &title, const QByteArray &link = {}, const QByteArray &text = {},
                const QByteArray &date = "Sun, 22 Nov 2026 19:00:00 GMT")
{
    QByteArray out = "<item><title>" + title + "</title><description>" + text + "</description>";
    if (!link.isEmpty())
        out += "<link>" + link + "</link>";
    if (!date.isEmpty())
        out += "<pubDate>" + date + "</pubDate>";
    return out + "</item>";
}

QByteArray repeated(const QByteArray &part, int times)
{
    QByteArray out;
    for (int i = 0; i < times; ++i)
        out += part;
    return out;
}

} // namespace

class TestReaders : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void read_data()
    {
        QTest::addColumn<JSONSource>("source");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("expected");

        // Statuspage summaries.
        QTest::newRow("indicator without description")
            << source() << QByteArray(R"({"status":{"indicator":"minor"},"components":[]})")
            << u"degraded | minor | "_s;
        QTest::newRow("unknown indicator")
            << source() << QByteArray(R"({"status":{"indicator":"odd","description":"Hm"}})")
            << u"unknown | Hm | "_s;
        QTest::newRow("maintenance treated as operational")
            << treating({u"under_maintenance"_s})
            << QByteArray(R"({"status":{"indicator":"none"},"components":[
                   {"id":"a","name":"A","status":"under_maintenance"}]})")
            << u"operational | All Systems Operational | a=operational(under_maintenance)"_s;
        const QByteArray grouped = R"({"status":{"indicator":"major"},"components":[
            {"id":"g1","name":"Sites","status":"major_outage","group":true},
            {"id":"a","name":"A","status":"partial_outage","group_id":"g1","group":false},
            {"id":"b","name":"B","status":"operational","groupId":"g1"},
            {"id":"c","name":"C","status":"operational","status":"major_outage"},
            {"id":"g2","name":"Other","status":"operational","group":true},
            {"id":"d","name":"D","status":"major_outage","group_id":"g2"},
            {"id":"e","name":"E","status":"major_outage","group_id":"missing"},
            {"id":"f","name":"F","status":"operational","GROUP_ID":"g1"}]})";
        QTest::newRow("groups dropped, everything else kept, a repeated key's last value")
            << source() << grouped
            << u"down | 4 components affected | a=degraded(partial_outage), b=operational(operational), c=down(major_outage), d=down(major_outage), e=down(major_outage), f=operational(operational)"_s;
        QTest::newRow("include one group, snake, camel and upper-case keys")
            << including({u"Sites"_s}) << grouped
            << u"degraded | A \u2014 degraded | a=degraded(partial_outage), b=operational(operational), f=operational(operational)"_s;
        QTest::newRow("empty include set keeps nothing")
            << including({}) << grouped << u"operational | All Systems Operational | "_s;
        QTest::newRow("an id beyond ASCII, a status word of the page's own")
            << source() << QByteArray(R"({"status":{"indicator":"minor"},"components":[
                   {"id":"caf\u00e9","name":"C","status":"\u00e0_moiti\u00e9"}]})")
            << u"degraded | C \u2014 degraded | caf\u00e9=degraded(\u00e0_moiti\u00e9)"_s;
        QTest::newRow("a number as a component's id")
            << source() << QByteArray(R"({"status":{"indicator":"none"},"components":[
                   {"id":1,"name":"A","status":"operational"}]})")
            << unrecognized;

        // incident.io widget documents.
        QTest::newRow("widget, inner object decides the shape")
            << source() << QByteArray(R"({"summary":{"foo":1},"ongoing_incidents":[]})")
            << unrecognized;
        // A summary that does not decode is not read around as an empty page.
        const QByteArray badSummary = R"({"summary":{"structure":{"items":[
            {"component":{"id":"c1","name":"One","hidden":%1}},{"component":{"id":"c2","name":%2}}]},
            "affected_components":[{"id":"c1","status":"full_outage"},{"id":"c2","status":"full_outage"}]}})";
        QTest::newRow("widget, hidden as a string")
            << source() << QString::fromUtf8(badSummary).arg(u"\"false\""_s, u"\"Two\""_s).toUtf8()
            << unrecognized;
        QTest::newRow("widget, a number as a name")
            << source() << QString::fromUtf8(badSummary).arg(u"false"_s, u"2"_s).toUtf8()
            << unrecognized;
        QTest::newRow("widget, subpages only") << source() << QByteArray(R"({"subpages":[]})")
                                               << u"operational | All Systems Operational | "_s;
        QTest::newRow("widget, incident without components")
            << source() << QByteArray(R"({"ongoing_incidents":[{"name":"Login failures"}]})")
            << u"degraded | Login failures | "_s;
        QTest::newRow("widget, structure with hidden component")
            << source() << QByteArray(R"({"summary":{"structure":{"items":[
                   {"group":{"name":"G","components":[
                       {"component_id":"c1","name":"One"},
                       {"component_id":"c2","name":"Two"},
                       {"component_id":"c3","name":"Three","hidden":true}]}}]},
                   "affected_components":[{"component_id":"c2","status":"partial_outage"}]}})")
            << u"degraded | Two \u2014 degraded | c1=operational(operational), c2=degraded(partial_outage)"_s;
        QTest::newRow("widget, camel keys and single components")
            << source() << QByteArray(R"({"summary":{"structure":{"items":[
                   {"component":{"id":"c1"}},{"component":{"componentId":"c2","name":"Two"}}]},
                   "affectedComponents":[{"componentId":"c1","currentStatus":"full_outage"}]}})")
            << u"down | c1 \u2014 down | c1=down(full_outage), c2=operational(operational)"_s;
        const QByteArray twoRefs = R"({"summary":{"structure":{"items":[{"component":{"id":"c"}}]},
            "affected_components":[{"id":"c","status":"%1"},{"id":"c","status":"%2"}]}})";
        QTest::newRow("widget, worse reference wins")
            << source()
            << QString::fromUtf8(twoRefs).arg(u"degraded_performance"_s, u"full_outage"_s).toUtf8()
            << u"down | c \u2014 down | c=down(full_outage)"_s;
        QTest::newRow("widget, current status wins")
            << source()
            << QByteArray(R"({"summary":{"structure":{"items":[{"component":{"id":"c"}}]},
                   "affected_components":[{"id":"c","current_status":"operational","status":"major_outage"}]}})")
            << u"operational | All Systems Operational | c=operational(operational)"_s;
        QTest::newRow("widget, fallback to references")
            << source() << QByteArray(R"({"summary":{"affected_components":[
                   {"id":"a","name":"A","status":"operational"},
                   {"id":"b","status":"major_outage"},
                   {"name":"keyless","status":"major_outage"}]}})")
            << u"down | b \u2014 down | b=down(major_outage)"_s;
        QTest::newRow("widget, incident references join in")
            << source()
            << QByteArray(
                   R"({"summary":{"structure":{"items":[{"component":{"id":"c","name":"C"}}]},
                   "ongoing_incidents":[{"name":"I","affected_components":[{"id":"c","status":"degraded_performance"}]}]}})")
            << u"degraded | C \u2014 degraded | c=degraded(degraded_performance)"_s;
        QTest::newRow("widget, incident leaves worse trouble alone")
            << source()
            << QByteArray(R"({"summary":{"affected_components":[{"id":"c","status":"major_outage"}],
                   "ongoing_incidents":[{"name":"Quiet"}]}})")
            << u"down | c \u2014 down | c=down(major_outage)"_s;

        // The Updog outage feed.
        const QByteArray feed = R"({"data":{"attributes":{"provider_data":[
            {"provider_name":"amazonaws","provider_service":"ec2","display_name":"EC2",
             "outages":[{"status":"resolved"}]},
            {"provider_name":"amazonaws","provider_service":"s3",
             "outages":[{"status":"ongoing"},{"status":"ongoing","impacted_region":"later"}]},
            {"providerName":"amazonaws","providerService":"lambda","displayName":"Lambda"},
            {"provider_name":"gcp","outages":[{"status":"ongoing","impacted_region":"eu-west-1"}]}]}}})";
        QTest::newRow("updog, not monitored")
            << updog(u"amazonaws"_s)
            << QByteArray(R"({"data":{"attributes":{"provider_data":[]}}})")
            << u"unknown | Not monitored by Updog | "_s;
        QTest::newRow("updog, several matches")
            << updog(u"amazonaws"_s) << feed
            << u"degraded | s3 \u2014 degraded | amazonaws/ec2=operational(operational), amazonaws/s3=degraded(ongoing outage), amazonaws/lambda=operational(operational)"_s;
        QTest::newRow("updog, resolved outage")
            << updog(u"amazonaws"_s, u"ec2"_s) << feed << u"operational | No outages detected | "_s;
        QTest::newRow("updog, ongoing outage, first region only")
            << updog(u"amazonaws"_s, u"s3"_s) << feed << u"degraded | Outage detected | "_s;
        QTest::newRow("updog, ongoing outage with region")
            << updog(u"gcp"_s) << feed << u"degraded | Outage detected \u2014 eu-west-1 | "_s;
        QTest::newRow("updog, everything without a provider")
            << updog(std::nullopt, u"ec2"_s) << feed
            << u"degraded | 2 components affected | amazonaws/ec2=operational(operational), amazonaws/s3=degraded(ongoing outage), amazonaws/lambda=operational(operational), gcp/=degraded(ongoing outage)"_s;

        // The relay feed.
        QTest::newRow("relay, schema only")
            << source() << QByteArray(R"({"schema":"lanternic.v1"})") << u"unknown | Unknown | "_s;
        // Lone surrogates have no UTF-8 form: every output would be invalid JSON.
        QTest::newRow("relay, lone surrogates replaced")
            << source()
            << QByteArray(
                   R"({"schema":"lanternic.v1","detail":"a\ud800b","components":[{"id":"\udc00","name":"N","status":"down"}]})")
            << u"down | a\ufffdb | \ufffd=down(down)"_s;
        QTest::newRow("relay, escapes and text beyond ASCII")
            << source()
            << QByteArray("{\"schema\":\"lanternic.v1\",\"detail\":\"caf\\u00e9 "
                          "\\ud83d\\ude00 \\\"q\\\" \\\\ \xc3\xbc\"}")
            << u"unknown | caf\u00e9 \U0001F600 \"q\" \\ \u00fc | "_s;
        QTest::newRow("relay, a repeated key takes its last value")
            << source()
            << QByteArray(R"({"schema":"lanternic.v1","detail":"first","detail":"last"})")
            << u"unknown | last | "_s;
        // Strict JSON refuses both; pages in the wild write them.
        QTest::newRow("relay, raw control characters and an unpaired escape inside texts")
            << source()
            << QByteArray("{\"schema\":\"lanternic.v1\",\"detail\":\"a\tb\nc\\ud800\\\\ud800\"}")
            << u"unknown | a\tb\nc\ufffd\\ud800 | "_s;
        QTest::newRow("relay, text that is not UTF-8")
            << source() << QByteArray("{\"schema\":\"lanternic.v1\",\"detail\":\"a\xff\"}")
            << unrecognized;
        QTest::newRow("relay, components override health")
            << source()
            << QByteArray(
                   R"({"schema":"lanternic.v1","health":"down","components":[{"id":"a","name":"A","status":"operational"}]})")
            << u"operational | Operational | a=operational(operational)"_s;
        QTest::newRow("relay, detail overrides the summary")
            << source()
            << QByteArray(
                   R"({"schema":"lanternic.v1","detail":"All good","components":[{"id":"a","name":"A","status":"down"}]})")
            << u"down | All good | a=down(down)"_s;
        QTest::newRow("relay, label replaces status text")
            << source()
            << QByteArray(
                   R"({"schema":"lanternic.v1","components":[{"id":"ci","name":"CI runners","status":"degraded","label":"Queue 40 min"}]})")
            << u"degraded | CI runners \u2014 degraded | ci=degraded(Queue 40 min)"_s;
        QTest::newRow("relay, status words")
            << source() << QByteArray(R"({"schema":"lanternic.v1","components":[
                   {"id":"a","name":"A","status":"partial_outage"},
                   {"id":"b","name":"B","status":"major_outage"},
                   {"id":"c","name":"C","status":"Down"}]})")
            << u"down | 3 components affected | a=degraded(partial_outage), b=down(major_outage), c=degraded(Down)"_s;
        QTest::newRow("relay, a repeated component id keeps the first")
            << source() << QByteArray(R"({"schema":"lanternic.v1","components":[
                   {"id":"a","name":"A","status":"operational"},
                   {"id":"a","name":"A again","status":"down"}]})")
            << u"operational | Operational | a=operational(operational)"_s;
        QTest::newRow("Statuspage, a repeated component id keeps the first")
            << source() << QByteArray(R"({"status":{"indicator":"none"},"components":[
                   {"id":"a","name":"A","status":"major_outage"},
                   {"id":"a","name":"A","status":"operational"}]})")
            << u"down | A \u2014 down | a=down(major_outage)"_s;
        QTest::newRow("Statuspage, a component id repeated in a long list keeps the first")
            << source()
            << QByteArray(R"({"status":{"indicator":"none"},"components":[)"
                          R"({"id":"a","name":"A","status":"major_outage"},)") +
                   repeated(R"({"id":"a","name":"A","status":"operational"},)", 40) +
                   R"({"id":"b","name":"B","status":"operational"}]})"
            << u"down | A \u2014 down | a=down(major_outage), b=operational(operational)"_s;
        QTest::newRow("relay, component without status")
            << source()
            << QByteArray(R"({"schema":"lanternic.v1","components":[{"id":"a","name":"A"}]})")
            << unrecognized;

        // The other platforms, from documents written to their published shapes.
        const struct {
            const char *file;
            const char *outline;
        } platforms[] = {
            {"instatus-summary.json", "degraded | Queue delays for image models | "},
            {"betterstack-index.json", "degraded | Runners \u2014 degraded | "
                                       "901=degraded(degraded), 902=operational(operational)"},
            {"statusio-status.json",
             "degraded | Docker Hub \u2014 degraded | 5e1=degraded(Partial Service Disruption), "
             "5e2=operational(Operational)"},
            {"cachet2-components.json", "degraded | API \u2014 degraded | "
                                        "1=operational(Operational), 2=degraded(Partial Outage)"},
            {"cachet3-components.json",
             "degraded | Mail \u2014 degraded | 1=operational(Operational), 2=degraded(Under "
             "maintenance)"},
            {"gatus-statuses.json",
             "down | 2 components affected | core_front-end=down(down), "
             "core_database=operational(operational), misc_new=unknown(unknown)"},
            {"google-incidents.json", "degraded | Cloud Storage \u2014 degraded | "
                                      "UwaYoXQ5bHYHG6EdiPB8=degraded(SERVICE_DISRUPTION)"},
            {"slack-current.json",
             "degraded | 2 components affected | Messaging=degraded(incident), "
             "Connectivity=degraded(incident)"},
            {"openstatus-status.json", "degraded | Degraded | "},
        };
        for (const auto &[file, expected] : platforms) {
            QTest::newRow(file) << source() << fixture(QString::fromLatin1(file))
                                << QString::fromUtf8(expected);
        }
        QTest::newRow("Slack, nothing active")
            << source() << QByteArray(R"({"status":"ok","active_incidents":[]})")
            << u"operational | Operational | "_s;
        QTest::newRow("Instatus up")
            << source() << QByteArray(R"({"page":{"status":"UP"},"activeIncidents":[]})")
            << u"operational | Operational | "_s;
        QTest::newRow("Cachet, ids beyond any integer or with a fraction")
            << source()
            << QByteArray(R"({"meta":{"pagination":{}},"data":[)"
                          R"({"id":1e300,"name":"A","status":1,"enabled":true},)"
                          R"({"id":2.5,"name":"B","status":1,"enabled":true}]})")
            << u"operational | All Systems Operational | 1e+300=operational(1), "
               u"2.5=operational(1)"_s;
        QTest::newRow("Cachet, a whole id beyond a double's precision stays exact")
            << source()
            << QByteArray(R"({"data":[{"id":9007199254740993,"name":"A","status":"2"}]})")
            << u"degraded | A \u2014 degraded | 9007199254740993=degraded(2)"_s;
        QTest::newRow("an HTML page")
            << source() << QByteArray("<!doctype html><html><body>Moved</body></html>")
            << unrecognized;

        // Detection order.
        QTest::newRow("relay before Statuspage")
            << source()
            << QByteArray(
                   R"({"schema":"lanternic.v1","health":"down","status":{"indicator":"none"}})")
            << u"down | Down | "_s;
        QTest::newRow("incident.io before Statuspage")
            << source() << QByteArray(R"({"ongoing_incidents":[],"status":{"indicator":"major"}})")
            << u"operational | All Systems Operational | "_s;
        QTest::newRow("Updog before Statuspage")
            << updog(std::nullopt)
            << QByteArray(
                   R"({"data":{"attributes":{"provider_data":[]}},"status":{"indicator":"major"}})")
            << u"operational | No outages detected | "_s;
    }

    void read()
    {
        QFETCH(JSONSource, source);
        QFETCH(QByteArray, body);
        QTEST(outline(SourceCheck::read(source, body)), "expected");
    }

    // Incidents and maintenance, from recorded and hand-written documents, at a fixed time.
    void news_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("health");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("Statuspage incident (recorded)")
            << u"statuspage-summary.json"_s << u"degraded"_s
            << QStringList{
                   u"I yq1zk5wq1b7d | Disruption with some GitHub services | investigating | "
                   u"minor | https://stspg.io/yq1zk5wq1b7d | 2026-11-22T18:38:12Z | "
                   u"2026-11-22T18:41:07Z | We are investigating reports of degraded performance "
                   u"for Git Operations."_s};
        // Over, completed, or more than a week away: left out. No shortlink: the page's own.
        QTest::newRow("Statuspage maintenance, operational with an incident open")
            << u"statuspage-maintenance.json"_s << u"operational"_s
            << QStringList{
                   u"I mon1tor1ng0a | Delayed webhook deliveries | monitoring | none | "
                   u"https://www.githubstatus.com/incidents/mon1tor1ng0a | 2026-11-22T17:00:00Z | "
                   u"2026-11-22T19:31:00Z | A fix has been deployed.\nWe are monitoring the "
                   u"results."_s,
                   u"M inpr0gress01 | Database failover | in_progress | 2026-11-22T19:00:00Z | "
                   u"2026-11-22T21:00:00Z | https://stspg.io/inpr0gress01"_s,
                   u"M upc0ming0001 | Network upgrade in FRA | scheduled | 2026-11-25T02:00:00Z | "
                   u"2026-11-25T06:00:00Z | https://stspg.io/upc0ming0001"_s};
        QTest::newRow("incident.io widget")
            << u"incidentio-news.json"_s << u"degraded"_s
            << QStringList{
                   u"I 01INC1DENT01 | Slow responses from the API | identified | "
                   u"minor | https://status.example.ai/incidents/01INC1DENT01 | "
                   u"2026-11-22T17:55:00Z | 2026-11-22T19:20:00Z | We have found the cause and are "
                   u"rolling out a fix."_s,
                   u"M 01MA1NT00001 | Search index rebuild | in_progress | 2026-11-22T19:00:00Z | "
                   u"2026-11-22T23:00:00Z | https://status.example.ai/incidents/01MA1NT00001"_s,
                   u"M 01MA1NT00002 | Database upgrade | scheduled | 2026-11-24T02:00:00Z | "
                   u"2026-11-24T06:00:00Z | https://status.example.ai/incidents/01MA1NT00002"_s};
        // A platform's own words, in Statuspage's.
        QTest::newRow("Instatus")
            << u"instatus-summary.json"_s << u"degraded"_s
            << QStringList{u"I clx1 | Queue delays for image models | investigating | major | "
                           u"https://status.fal.ai/incident/clx1 | 2026-11-22T18:20:00Z | "
                           u"2026-11-22T18:20:00Z | "_s,
                           u"M clm1 | GPU fleet upgrade | in_progress | 2026-11-22T19:00:00Z | "
                           u"2026-11-22T21:00:00Z | https://status.fal.ai/maintenance/clm1"_s};
        QTest::newRow("relay feed")
            << u"relay-news.json"_s << u"operational"_s
            << QStringList{u"I build::inc1 | Build farm: Queue backlog | monitoring | minor | "
                           u"https://status.example.com/incidents/inc1 | 2026-11-22T18:00:00Z | "
                           u"2026-11-22T19:45:00Z | Queues are draining."_s,
                           u"I build::inc3 | Bad link | investigating |  | - | - | - | "_s,
                           u"M build::m1 | Build farm: Runner image update | scheduled | "
                           u"2026-11-23T22:00:00Z | 2026-11-24T01:00:00Z | -"_s};
    }

    void news()
    {
        QFETCH(QString, file);
        const SourceResult result = SourceCheck::read(
            source(), fixture(file), QDateTime::fromString(u"2026-11-22T20:00:00Z"_s, Qt::ISODate));
        QTEST(rawValue(result.health), "health");
        QTEST(::news(result), "expected");
    }

    void feeds_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QStringList>("incidents"); // "name | stage | impact | started"
        const QString feed = u"https://status.example.org/feed"_s;
        const QString azure = u"https://azure.status.microsoft/en-us/status/feed/"_s;
        const QString aws = u"https://status.aws.amazon.com/rss/all.rss"_s;
        // The newest entry of each incident decides; resolved, or quiet for a day, is over.
        QTest::newRow("Statuspage history (Atom)")
            << feed << fixture(u"statuspage-history.atom"_s)
            << u"degraded | Disruption with some GitHub services | "_s
            << QStringList{u"Disruption with some GitHub services | investigating |  | "
                           u"2026-11-22T18:38:12Z"_s};
        QTest::newRow("general RSS, items grouped by link")
            << feed << fixture(u"cachet-feed.rss"_s)
            << u"degraded | Investigating: Mail delivery delayed | "_s
            << QStringList{u"Investigating: Mail delivery delayed | investigating |  | "
                           u"2026-11-22T18:50:00Z"_s};
        QTest::newRow("AWS, one service-region")
            << u"https://status.aws.amazon.com/rss/ec2-us-east-1.rss"_s
            << fixture(u"aws-ec2-us-east-1.rss"_s) << u"degraded | Increased API error rates | "_s
            << QStringList{u"Increased API error rates | investigating | minor | "
                           u"2026-11-22T19:52:00Z"_s};
        QTest::newRow("AWS, several service-regions")
            << aws << fixture(u"aws-all.rss"_s)
            << u"down | lambda-us-west-2 \u2014 down | lambda-us-west-2=down(down), "
               u"iam-us-east-1=operational(operational), s3-eu-west-1=operational(operational)"_s
            << QStringList{u"Elevated error rates | investigating | major | 2026-11-22T19:40:00Z"_s,
                           u"Console sign-in latency | investigating | none | "
                           u"2026-11-22T18:15:00Z"_s};
        QTest::newRow("Azure, an event going on")
            << azure << fixture(u"azure-status.rss"_s)
            << u"degraded | Active - Azure Front Door - Intermittent connectivity issues | "_s
            << QStringList{u"Active - Azure Front Door - Intermittent connectivity issues | "
                           u"investigating |  | 2026-11-22T18:05:00Z"_s};
        QTest::newRow("Azure, all well")
            << azure << rss({}) << u"operational | Operational | "_s << QStringList{};
        QTest::newRow("empty feed")
            << feed << rss({}) << u"operational | Operational | "_s << QStringList{};
        QTest::newRow("[RESOLVED], Completed and Postmortem are over")
            << feed
            << rss(item("[RESOLVED] Queue delays", "https://s.example/1") +
                   item("Maintenance", "https://s.example/2", "Completed - done") +
                   item("Outage", "https://s.example/3", "Postmortem - what happened"))
            << u"operational | Operational | "_s << QStringList{};
        QTest::newRow("older than a day is over")
            << feed
            << rss(item("Investigating: DNS", "https://s.example/1", {},
                        "Fri, 20 Nov 2026 19:00:00 GMT"))
            << u"operational | Operational | "_s << QStringList{};
        QTest::newRow("first stage word in the text, markup removed")
            << feed
            << rss(item("&lt;b&gt;API &amp;amp; DB&lt;/b&gt;", "https://s.example/1",
                        "&lt;p&gt;&lt;strong&gt;Monitoring&lt;/strong&gt; - fixed. "
                        "Investigating - slow.&lt;/p&gt;"))
            << u"degraded | API & DB | "_s
            << QStringList{u"API & DB | monitoring |  | 2026-11-22T19:00:00Z"_s};
        QTest::newRow("several incidents, without links by guid")
            << feed
            << rss("<item><title>Investigating: A</title><guid>a</guid></item>"
                   "<item><title>Resolved: A</title><guid>a</guid>"
                   "<pubDate>Sun, 22 Nov 2026 19:30:00 GMT</pubDate></item>"
                   "<item><title>Identified: B</title><guid>b</guid></item>")
            << u"degraded | Identified: B | "_s
            << QStringList{u"Identified: B | identified |  | -"_s};
        QTest::newRow("titles not AWS's read by the general rule")
            << aws << rss(item("Service disruption: X", "https://s.example/1") + item("Other"))
            << u"degraded | Service disruption: X | "_s
            << QStringList{u"Service disruption: X | investigating |  | 2026-11-22T19:00:00Z"_s,
                           u"Other | investigating |  | 2026-11-22T19:00:00Z"_s};
        QTest::newRow("10,000 items read within bounds")
            << feed << rss(repeated(item("Resolved: A", "https://s.example/1"), 10000))
            << u"operational | Operational | "_s << QStringList{};
        // Not feeds at all.
        QTest::newRow("HTML page")
            << feed << QByteArray("<!DOCTYPE html><html><body>Status</body></html>") << unrecognized
            << QStringList{};
        QTest::newRow("XML of another root")
            << feed << QByteArray("<?xml version=\"1.0\"?><urlset><url/></urlset>") << unrecognized
            << QStringList{};
        QTest::newRow("rss without a channel")
            << feed << QByteArray("<rss version=\"2.0\"><item><title>A</title></item></rss>")
            << unrecognized << QStringList{};
        QTest::newRow("billion laughs")
            << feed
            << QByteArray("<?xml version=\"1.0\"?><!DOCTYPE rss [<!ENTITY a \"aaaaaaaaaa\">"
                          "<!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
                          "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">]>"
                          "<rss><channel><item><title>&c;</title></item></channel></rss>")
            << unrecognized << QStringList{};
        QTest::newRow("external entity")
            << feed
            << QByteArray("<?xml version=\"1.0\"?><!DOCTYPE rss [<!ENTITY x SYSTEM "
                          "\"file:///etc/passwd\">]><rss><channel><item><title>&x;</title>"
                          "</item></channel></rss>")
            << unrecognized << QStringList{};
        QTest::newRow("deep nesting")
            << feed
            << rss("<item><title>A</title><description>" + repeated("<b>", 100) +
                   repeated("</b>", 100) + "</description></item>")
            << unrecognized << QStringList{};
    }

    void feeds()
    {
        QFETCH(QString, url);
        QFETCH(QByteArray, body);
        JSONSource feedSource = source();
        feedSource.url = QUrl(url);
        const SourceResult result = SourceCheck::read(
            feedSource, body, QDateTime::fromString(u"2026-11-22T20:00:00Z"_s, Qt::ISODate));
        QTEST(outline(result), "expected");
        QStringList incidents;
        for (const Incident &i : result.incidents)
            incidents.append(
                u"%1 | %2 | %3 | %4"_s.arg(i.name, i.stage, i.impact, instant(i.startedAt)));
        QTEST(incidents, "incidents");
    }

    void feedDates_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("utc");
        QTest::newRow("GMT") << u"Sun, 22 Nov 2026 19:00:00 GMT"_s << u"2026-11-22T19:00:00Z"_s;
        QTest::newRow("PST") << u"Sun, 22 Nov 2026 11:52:00 PST"_s << u"2026-11-22T19:52:00Z"_s;
        QTest::newRow("offset, no weekday, no seconds")
            << u"22 Nov 2026 21:30 +0130"_s << u"2026-11-22T20:00:00Z"_s;
        QTest::newRow("no zone") << u"Sun, 22 Nov 2026 19:00:00"_s << u"-"_s;
        QTest::newRow("no such day") << u"31 Feb 2026 19:00:00 GMT"_s << u"-"_s;
    }

    void feedDates()
    {
        QFETCH(QString, text);
        QTEST(instant(parseFeedDate(text)), "utc");
    }

    // Each reader accepts its own platform's documents and nobody else's.
    void shapeTestsAcceptOnlyTheirOwn()
    {
        // Fixture files begin with the platform's name in lower case, or with these.
        const QHash<QString, QString> prefixes{{u"lanternic.v1"_s, u"relay"_s},
                                               {u"incident.io"_s, u"incidentio"_s},
                                               {u"Better Stack"_s, u"betterstack"_s},
                                               {u"status.io"_s, u"statusio"_s}};
        const QStringList files =
            QDir(QStringLiteral(LANTERNIC_FIXTURES_DIR)).entryList({u"*.json"_s}, QDir::Files);
        QVERIFY(files.size() >= 16);
        for (const QString &file : files) {
            const JsonDocument document = parseJson(fixture(file));
            for (const Platform &platform : Platforms::all()) {
                if (!platform.read)
                    continue;
                const QString name =
                    prefixes.value(platform.displayName, QString(platform.displayName).toLower());
                const bool own = file.startsWith(name);
                QVERIFY2(platform.read(source(), document).has_value() == own,
                         qPrintable(file + u" read by "_s + name));
            }
        }
    }

    // Numbers as the readers ask for them: whole ones exactly, anything else as the fallback.
    void jsonNumbers_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<qint64>("integer");
        QTest::addColumn<int>("small");
        QTest::addColumn<double>("number");
        QTest::newRow("whole") << QByteArray("42") << qint64(42) << 42 << 42.0;
        QTest::newRow("negative") << QByteArray("-7") << qint64(-7) << -7 << -7.0;
        QTest::newRow("whole, written with a fraction")
            << QByteArray("100.0") << qint64(100) << 100 << 100.0;
        QTest::newRow("a fraction") << QByteArray("2.5") << qint64(-1) << -1 << 2.5;
        QTest::newRow("beyond an int")
            << QByteArray("4294967296") << qint64(4294967296) << -1 << 4294967296.0;
        QTest::newRow("beyond 64 bits") << QByteArray("1e300") << qint64(-1) << -1 << 1e300;
        QTest::newRow("a string") << QByteArray("\"3\"") << qint64(-1) << -1 << -1.0;
        QTest::newRow("null") << QByteArray("null") << qint64(-1) << -1 << -1.0;
    }

    void jsonNumbers()
    {
        QFETCH(QByteArray, value);
        const JsonDocument document = parseJson("{\"n\":" + value + "}");
        const JsonValue n = document.object().value("n"_L1);
        QTEST(n.toInteger(-1), "integer");
        QTEST(n.toInt(-1), "small");
        QTEST(n.toDouble(-1), "number");
    }

    // Documents reuse the buffers of those let go, never of one still held.
    void documentsKeepTheirOwnValues()
    {
        const auto text = [](const JsonDocument &document) {
            return document.object().value("t"_L1).toString();
        };
        parseJson(R"({"t":"dropped"})");
        const JsonDocument a = parseJson(R"({"t":"a"})");
        std::optional<JsonDocument> b = parseJson(R"({"t":"b","pad":"makes it the larger"})");
        QCOMPARE(text(a), u"a"_s);
        b.reset();
        const JsonDocument c = parseJson(R"({"t":"c"})");
        QCOMPARE(text(a), u"a"_s);
        QCOMPARE(text(c), u"c"_s);
    }

    // Read as Qt's ISO 8601 parser reads them, in UTC; the usual form is read without it.
    void instants_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text :
             {"2026-11-22T18:41:07.113Z", "2026-11-22T18:41:07Z", "2024-02-29T00:00:00Z",
              "2026-02-29T00:00:00Z", "2026-11-22T24:00:00Z", "2026-11-22T18:41:07.113+02:00",
              "2026-11-22t18:41:07Z", "2026-11-22T18:41:07.1Z", "2026-1x-22T18:41:07Z", ""})
            QTest::newRow(text) << QString::fromLatin1(text);
    }

    void instants()
    {
        QFETCH(QString, text);
        QDateTime qt = QDateTime::fromString(text, Qt::ISODateWithMs);
        if (!qt.isValid())
            qt = QDateTime::fromString(text, Qt::ISODate);
        const QDateTime read = JsonValues::instant(text);
        QCOMPARE(read, qt.isValid() ? qt.toUTC() : QDateTime());
        if (read.isValid())
            QCOMPARE(read.timeSpec(), Qt::UTC);
    }

    void homeUrls_data()
    {
        // Plain literals: the meta-object compiler misreads "//" inside raw strings.
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("url");
        QTest::newRow("summary page url")
            << QByteArray("{\"status\":{\"indicator\":\"none\"},\"page\":{\"url\":\"https://"
                          "www.githubstatus.com\"}}")
            << u"https://www.githubstatus.com"_s;
        QTest::newRow("summary page url that does not parse")
            << QByteArray(
                   "{\"status\":{\"indicator\":\"none\"},\"page\":{\"url\":\"http://exa mple\"}}")
            << u"https://home.example"_s;
        QTest::newRow("widget public url")
            << QByteArray(
                   "{\"summary\":{\"public_url\":\"https://status.openai.com\",\"structure\":{}}}")
            << u"https://status.openai.com"_s;
        for (const char *link : {"javascript:alert(1)", "/relative/page", "https:///no-host"}) {
            QTest::addRow("relay url %s", link)
                << QByteArray("{\"schema\":\"lanternic.v1\",\"url\":\"") + link + "\"}"
                << u"https://home.example"_s;
        }
    }

    void homeUrls()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, url);
        QCOMPARE(SourceCheck::read(source(), body).url, QUrl(url));
    }
};

QTEST_GUILESS_MAIN(TestReaders)

#include "test_readers.moc"
