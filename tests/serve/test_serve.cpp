// The watcher's HTTP side over loopback: its routes, the relay round trip, conditional
// requests, and requests and connections it must refuse without harm.

#include "serve/forwarder.h"
#include "serve/watchserver.h"
#include "sources/readers/feeddocument.h"
#include "sources/readers/jsondecoder.h"
#include "sources/sourcecheck.h"
#include "support/fixtures.h"
#include "support/storefixture.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace lanternic;
using namespace Qt::StringLiterals;

namespace {

struct Answer {
    // The entity tag, quotes included.
    QByteArray etag() const
    {
        const qsizetype at = head.indexOf("ETag: ");
        return at < 0 ? QByteArray() : head.mid(at + 6, head.indexOf('\r', at) - at - 6);
    }

    int status = 0;
    QByteArray head;
    QByteArray body;
};

// One raw request on its own connection, in two pieces when split is given; the answer as it
// came. The server runs on this thread, so the waits keep the event loop turning.
Answer ask(quint16 port, const QByteArray &request, qsizetype split = 0)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    if (!QTest::qWaitFor([&] { return socket.state() == QAbstractSocket::ConnectedState; }, 5000))
        return {};
    if (split > 0) {
        socket.write(request.first(split));
        socket.flush();
        QTest::qWait(50);
    }
    socket.write(request.sliced(split));
    QByteArray data;
    auto complete = [&] {
        data += socket.readAll();
        const qsizetype end = data.indexOf("\r\n\r\n");
        if (end < 0)
            return socket.state() == QAbstractSocket::UnconnectedState;
        const QByteArray head = data.left(end).toLower();
        const qsizetype at = head.indexOf("content-length:");
        const qsizetype length =
            at < 0 ? 0 : head.mid(at + 15, head.indexOf('\r', at) - at - 15).trimmed().toLongLong();
        return data.size() >= end + 4 + length || request.startsWith("HEAD");
    };
    if (!QTest::qWaitFor(complete, 5000))
        return {};
    const qsizetype end = data.indexOf("\r\n\r\n");
    return {data.mid(9, 3).toInt(), data.left(end), end < 0 ? QByteArray() : data.mid(end + 4)};
}

QByteArray get(const QByteArray &path, const QByteArray &extra = {})
{
    return "GET " + path + " HTTP/1.1\r\nHost: localhost\r\n" + extra + "\r\n";
}

// What the kernel holds unsent on this machine's connections from the given local port.
qint64 queuedBytes(quint16 port)
{
    qint64 total = 0;
    for (const char *table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        QFile file(QString::fromLatin1(table));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        file.readLine();
        while (!file.atEnd()) {
            // sl local_address rem_address st tx_queue:rx_queue …; a listening socket (0A)
            // tells its backlog there instead.
            const QList<QByteArray> fields = file.readLine().simplified().split(' ');
            if (fields.size() < 5 || fields[1].split(':').value(1).toUInt(nullptr, 16) != port ||
                fields[3] == "0A")
                continue;
            // A closing socket counts its FIN, which a client's full window also holds back.
            const bool closing = fields[3] == "04" || fields[3] == "0B" || fields[3] == "09";
            total += std::max<qint64>(0, fields[4].split(':').value(0).toLongLong(nullptr, 16) -
                                             (closing ? 1 : 0));
        }
    }
    return total;
}

// A connection from one of this machine's loopback addresses, whose request comes in two
// writes, the way that needs a waiting place.
std::unique_ptr<QTcpSocket> askInPieces(const QString &from, quint16 port, const QByteArray &path)
{
    auto socket = std::make_unique<QTcpSocket>();
    socket->bind(QHostAddress(from));
    socket->connectToHost(QHostAddress::LocalHost, port);
    socket->write("GET " + path + " HTTP/1.1\r\n");
    return socket;
}

// A port nothing listens on yet, for a receiver that comes up later.
quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return probe.serverPort();
}

} // namespace

class TestServe : public QObject {
    Q_OBJECT

    std::unique_ptr<StoreFixture> fixture;
    std::unique_ptr<WatchServer> server;
    quint16 port = 0;

private Q_SLOTS:
    void init()
    {
        fixture = std::make_unique<StoreFixture>();
        server = std::make_unique<WatchServer>(fixture->store, u"Team"_s);
        port = server->listen(QHostAddress::LocalHost, 0);
        QVERIFY(port != 0);
        fixture->addSource(u"GitHub"_s, "operational",
                           "[" + relayComponent(u"git"_s, u"Git \"Ops\"\n"_s, u"down"_s) + "]");
        fixture->addSource(
            u"Linear"_s, "operational", "[]", {},
            R"(,"incidents":[{"id":"i1","name":"Slow \n sync","status":"monitoring"}])");
    }

    void cleanup()
    {
        server.reset();
        fixture.reset();
    }

    void relayRoundTripAndConditionalRequests()
    {
        fixture->runPass();
        QCOMPARE(ask(port, get("/healthz")).status, 200);
        const Answer feed = ask(port, get("/lanternic.json"));
        QCOMPARE(feed.status, 200);
        // Feed text goes out as it is shown: the component's line break is gone.
        QVERIFY(feed.body.contains(R"(Git \"Ops\"  — down)"));
        QVERIFY(feed.head.contains("Last-Modified: Mon, 16 Nov 2026 17:00:00 GMT"));
        const QByteArray etag = feed.etag();

        JSONSource team;
        team.id = u"team"_s;
        team.name = u"Team feed"_s;
        const SourceResult read = SourceCheck::read(team, feed.body);
        QCOMPARE(read.name, u"Team"_s);
        QCOMPARE(read.health, fixture->store.overallHealth());
        QCOMPARE(read.detail, fixture->store.summaryText());
        QCOMPARE(read.components.size(), fixture->store.providers().size());
        // Incidents travel too, named after their source, their text as it is shown.
        QCOMPARE(read.incidents.size(), 1);
        QCOMPARE(read.incidents.first().name, u"Linear: Slow   sync"_s);
        QCOMPARE(read.incidents.first().stage, u"monitoring"_s);

        QCOMPARE(ask(port, get("/lanternic.json", "If-None-Match: " + etag + "\r\n")).status, 304);
        QCOMPARE(ask(port, get("/lanternic.json", "If-None-Match: \"other\"\r\n")).status, 200);
        const Answer head = ask(port, "HEAD /lanternic.json HTTP/1.1\r\nHost: x\r\n\r\n");
        QCOMPARE(head.status, 200);
        QVERIFY(head.body.isEmpty());

        // The same view as a Statuspage summary, which a Statuspage reader reads back: one
        // component per source and per affected component, the incidents as they are.
        const Answer summary = ask(port, get("/api/v2/summary.json"));
        QCOMPARE(summary.status, 200);
        const SourceResult page = SourceCheck::read(team, summary.body);
        QCOMPARE(page.health, fixture->store.overallHealth());
        QCOMPARE(page.components.size(), 3);
        QCOMPARE(page.components[1].name, u"GitHub \u00b7 Git \"Ops\" "_s);
        QCOMPARE(page.components[1].health, Health::down);
        QCOMPARE(page.incidents.size(), 1);
        QCOMPARE(page.incidents.first().name, u"Linear: Slow   sync"_s);
        QCOMPARE(ask(port, get("/api/v2/summary.json", "If-None-Match: " + summary.etag() + "\r\n"))
                     .status,
                 304);
    }

    // Both documents are written directly, and read byte for byte as QJsonDocument writes
    // them, news with every field included.
    void documentsAsQtWritesThem()
    {
        fixture->addSource(
            u"Deploys"_s, "degraded", "[]", {},
            ",\"incidents\":[{\"id\":\"i2\",\"name\":\"Paused\",\"status\":\"identified\","
            "\"impact\":\"major\",\"url\":\"https://status.example.com/i2\","
            "\"startedAt\":\"2026-11-16T16:00:00.250Z\",\"updatedAt\":\"2026-11-16T16:30:00Z\","
            "\"update\":\"Rolling back\"}],\"maintenances\":[{\"id\":\"m1\",\"name\":\"Upgrade\","
            "\"status\":\"scheduled\",\"startsAt\":\"2026-11-18T00:00:00Z\","
            "\"endsAt\":\"2026-11-18T02:00:00.5Z\",\"url\":\"https://status.example.com/m1\"}]");
        fixture->runPass();
        for (const QByteArray path : {"/lanternic.json", "/api/v2/summary.json"}) {
            const QByteArray body = ask(port, get(path)).body;
            QCOMPARE(body, QJsonDocument::fromJson(body).toJson(QJsonDocument::Compact));
        }
        const QJsonObject summary =
            QJsonDocument::fromJson(ask(port, get("/api/v2/summary.json")).body).object();
        const QJsonObject window = summary[u"scheduled_maintenances"_s][0].toObject();
        QCOMPARE(window[u"scheduled_until"_s], u"2026-11-18T02:00:00.500Z"_s);
        QCOMPARE(window[u"shortlink"_s], u"https://status.example.com/m1"_s);
        const QJsonObject incident = summary[u"incidents"_s].toArray().last().toObject();
        QCOMPARE(incident[u"started_at"_s], u"2026-11-16T16:00:00.250Z"_s);
        QCOMPARE(incident[u"incident_updates"_s][0][u"body"_s], u"Rolling back"_s);
    }

    // The changes between passes as an Atom feed that feed readers, chat tools and Lanternic's
    // own feed reader follow.
    void changesAsAnAtomFeed()
    {
        fixture->runPass();
        const Answer first = ask(port, get("/feed.atom"));
        QCOMPARE(first.status, 200);
        QCOMPARE(FeedDocument::parse(first.body)->items.size(), 0);

        fixture->server.route("/feed1.json", {200,
                                              relayFeed("down", "[]",
                                                        R"(,"incidents":[{"id":"i1","name":"Slow 
 sync","status":"monitoring"}])"),
                                              {}});
        fixture->runPass();
        const Answer feed = ask(port, get("/feed.atom"));
        const std::optional<FeedDocument> read = FeedDocument::parse(feed.body);
        QVERIFY(read);
        QCOMPARE(read->items.size(), 1);
        QCOMPARE(read->items.first().title, u"Linear is down"_s);
        QCOMPARE(read->items.first().text, u"Monitoring: Slow   sync"_s);
        QCOMPARE(read->items.first().updated, fixture->now);
        JSONSource team;
        QCOMPARE(SourceCheck::read(team, feed.body, fixture->now).detail, u"Linear is down"_s);
        QCOMPARE(ask(port, get("/feed.atom", "If-None-Match: " + feed.etag() + "\r\n")).status,
                 304);
    }

    void forwardAddresses_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("endpoint"); // empty: refused
        QTest::newRow("ntfy") << u"ntfy://10.0.0.5:8080/alerts"_s
                              << u"http://10.0.0.5:8080/alerts"_s;
        QTest::newRow("ntfy over TLS") << u" ntfys://ntfy.sh/team "_s << u"https://ntfy.sh/team"_s;
        QTest::newRow("webhook") << u"jsons://hooks.example/in?x=1"_s
                                 << u"https://hooks.example/in?x=1"_s;
        QTest::newRow("loopback webhook") << u"json://127.0.0.1:9/"_s << u"http://127.0.0.1:9/"_s;
        QTest::newRow("no topic") << u"ntfy://ntfy.sh/"_s << QString();
        QTest::newRow("link-local") << u"json://169.254.169.254/latest"_s << QString();
        QTest::newRow("link-local v6") << u"json://[fe80::1]/x"_s << QString();
        QTest::newRow("other scheme") << u"https://ntfy.sh/team"_s << QString();
        QTest::newRow("no host") << u"json:///x"_s << QString();
    }

    void forwardAddresses()
    {
        QFETCH(QString, address);
        QFETCH(QString, endpoint);
        const std::optional<ForwardTarget> target = ForwardTarget::parse(address);
        QCOMPARE(target ? target->endpoint.toString() : QString(), endpoint);
    }

    // A change reaches ntfy at once, and a signed webhook that comes up only after it; both
    // counted in the metrics as they go.
    void forwardsChangesToNtfyAndWebhooks()
    {
        LoopbackServer ntfy;
        ntfy.route("/alerts", {200, "{}", {}});
        const quint16 hookPort = freePort();
        Forwarder forwarder(
            {fixture->store, fixture->environment.notificationRules, fixture->environment.session},
            fixture->dir.filePath(u"outbox.json"_s), {.firstRetry = std::chrono::milliseconds(50)});
        connect(&forwarder, &Forwarder::countsChanged, server.get(),
                [&] { server->setForwardCounts(forwarder.counts()); });
        forwarder.setSecret("s3cret");
        forwarder.setTargets(ForwardTarget::parseLines(
            ntfy.url("/alerts").toString().replace(u"http:"_s, u"ntfy:"_s) +
            u"\njson://127.0.0.1:%1/hook"_s.arg(hookPort)));
        fixture->runPass();
        fixture->server.route(
            "/feed1.json",
            {200,
             relayFeed("down", "[]",
                       R"(,"url":"https://status.example.com/1",)"
                       R"("incidents":[{"id":"i1","name":"Slow sync","status":"identified"}])"),
             {}});
        fixture->runPass();

        QTRY_COMPARE(ntfy.received().size(), 1);
        const LoopbackServer::Request &push = ntfy.received().first();
        QCOMPARE(push.method, "POST");
        QCOMPARE(push.header("title"), "Linear is down");
        QCOMPARE(push.header("priority"), "5");
        QCOMPARE(push.header("tags"), "rotating_light");
        QCOMPARE(push.header("click"), "https://status.example.com/1");
        QCOMPARE(QString::fromUtf8(push.body), u"Linear — down\nIdentified: Slow sync"_s);

        QTRY_VERIFY(forwarder.counts().failures >= 1);
        // ntfy has the push once it has read it, the forwarder its answer only after that.
        QTRY_COMPARE(forwarder.counts().pending, 1);
        QVERIFY(ask(port, get("/metrics")).body.contains("lanternic_forward_pending 1\n"));
        LoopbackServer hook(QHostAddress::LocalHost, hookPort);
        hook.route("/hook", {204, {}, {}});
        QTRY_COMPARE(hook.received().size(), 1);
        const LoopbackServer::Request &event = hook.received().first();
        QCOMPARE(event.header("x-lanternic-signature"),
                 ForwardEvent::signature(event.body, "s3cret"));
        const QJsonObject json = QJsonDocument::fromJson(event.body).object();
        QCOMPARE(json[u"schema"_s].toString(), u"lanternic.event.v1"_s);
        QCOMPARE(json[u"source"_s][u"name"_s].toString(), u"Linear"_s);
        QCOMPARE(json[u"source"_s][u"url"_s].toString(), u"https://status.example.com/1"_s);
        QCOMPARE(json[u"from"_s].toString(), u"operational"_s);
        QCOMPARE(json[u"to"_s].toString(), u"down"_s);
        QCOMPARE(json[u"incidents"_s][0][u"name"_s].toString(), u"Slow sync"_s);
        QCOMPARE(json[u"at"_s].toString(), u"2026-11-16T17:00:00Z"_s);
        QTRY_COMPARE(forwarder.counts().pending, 0);
        QVERIFY(ask(port, get("/metrics")).body.contains("lanternic_forward_pending 0\n"));
        QCOMPARE(ntfy.received().size(), 1);
    }

    // Muted (a pause, or quiet hours), nothing goes; after it, what changed meanwhile does.
    void forwardingKeepsTheNotificationTerms()
    {
        LoopbackServer ntfy;
        ntfy.route("/alerts", {200, {}, {}});
        Forwarder forwarder(
            {fixture->store, fixture->environment.notificationRules, fixture->environment.session},
            fixture->dir.filePath(u"outbox.json"_s), {});
        forwarder.setTargets(
            ForwardTarget::parseLines(u"ntfy://127.0.0.1:%1/alerts"_s.arg(ntfy.port())));
        fixture->runPass();
        fixture->environment.notificationRules.pauseUntil(fixture->now.addSecs(600));
        fixture->server.route("/feed1.json", {200, relayFeed("down"), {}});
        fixture->runPass();
        QTest::qWait(100);
        QCOMPARE(ntfy.received().size(), 0);
        fixture->now = fixture->now.addSecs(900);
        fixture->server.route("/feed1.json", {200, relayFeed("degraded"), {}});
        fixture->runPass();
        QTRY_COMPARE(ntfy.received().size(), 1);
        QCOMPARE(ntfy.received().first().header("title"), "Linear went down and is degraded now");
        QCOMPARE(ntfy.received().first().header("priority"), "4");
    }

    // What a receiver refused (here for a wrong secret) waits in the outbox across a restart
    // and goes once it is taken; a full outbox drops its oldest.
    void outboxOutlivesRestartsAndRefusals()
    {
        LoopbackServer hook;
        hook.route("/hook", {401, "bad signature", {}});
        const QList<ForwardTarget> targets =
            ForwardTarget::parseLines(u"json://127.0.0.1:%1/hook"_s.arg(hook.port()));
        const QString outbox = fixture->dir.filePath(u"outbox.json"_s);
        const auto forwarder = [&](const QByteArray &secret) {
            auto made = std::make_unique<Forwarder>(
                Forwarder::Services{fixture->store, fixture->environment.notificationRules,
                                    fixture->environment.session},
                outbox,
                Forwarder::Options{.firstRetry = std::chrono::milliseconds(50), .capacity = 2});
            made->setSecret(secret);
            made->setTargets(targets);
            return made;
        };
        auto first = forwarder("wrong");
        fixture->runPass();
        for (const QByteArray health : {"down", "operational", "down"}) {
            fixture->server.route("/feed1.json", {200, relayFeed(health), {}});
            fixture->runPass();
        }
        QTRY_VERIFY(hook.received().size() >= 2);
        QVERIFY(hook.received().last().header("x-lanternic-signature") !=
                ForwardEvent::signature(hook.received().last().body, "right"));
        QCOMPARE(first->counts().dropped, 1);
        QCOMPARE(first->counts().pending, 2);
        first.reset();

        hook.route("/hook", {200, {}, {}});
        const qsizetype before = hook.received().size();
        auto second = forwarder("right");
        QTRY_COMPARE(second->counts().pending, 0);
        const QList<LoopbackServer::Request> sent = hook.received().mid(before);
        QCOMPARE(sent.size(), 2);
        QCOMPARE(QJsonDocument::fromJson(sent[0].body)[u"to"_s].toString(), u"operational"_s);
        QCOMPARE(QJsonDocument::fromJson(sent[1].body)[u"to"_s].toString(), u"down"_s);
        for (const LoopbackServer::Request &request : sent)
            QCOMPARE(request.header("x-lanternic-signature"),
                     ForwardEvent::signature(request.body, "right"));
        second.reset();
        auto third = forwarder("right");
        QTest::qWait(200);
        QCOMPARE(hook.received().size(), before + 2);
    }

    void gzipForClientsThatTakeIt()
    {
        fixture->runPass();
        const struct {
            QByteArray acceptEncoding;
            bool gzipped;
        } cases[] = {
            {"deflate, GZIP;q=0.5", true},
            {"*", true},
            {"gzip;q=0", false},
            {{}, false},
        };
        for (const auto &[acceptEncoding, gzipped] : cases) {
            const QByteArray extra = acceptEncoding.isNull()
                                         ? QByteArray()
                                         : "Accept-Encoding: " + acceptEncoding + "\r\n";
            for (const QByteArray path : {"/metrics", "/lanternic.json"}) {
                const Answer answer = ask(port, get(path, extra));
                QCOMPARE(answer.status, 200);
                QVERIFY(answer.head.contains("Vary: Accept-Encoding"));
                QVERIFY2(answer.head.contains("Content-Encoding: gzip") == gzipped,
                         acceptEncoding.constData());
            }
        }

        // The compressed feed (which the end-to-end test decodes with curl) has a tag of its own
        // that makes a conditional request.
        const Answer gzipped = ask(port, get("/lanternic.json", "Accept-Encoding: gzip\r\n"));
        const QByteArray tag = gzipped.etag();
        QVERIFY(tag.endsWith("-gzip\""));
        QCOMPARE(ask(port, get("/lanternic.json", "If-None-Match: " + tag + "\r\n")).status, 304);
    }

    // Requests that come whole are read apart from the HTTP server's parser: both readings
    // must give one answer.
    void aRequestInPiecesIsAnsweredAsAWholeOne()
    {
        fixture->runPass();
        const QByteArray tag = ask(port, get("/lanternic.json")).etag();
        const struct {
            QByteArray request;
            int status;
        } cases[] = {
            {get("/metrics", "accept-encoding: gzip\r\n"), 200},
            {get("/lanternic.json?since=1"), 200},
            {get("/lanternic.json", "if-none-match:" + tag + "\r\n"), 304},
            {"HEAD /healthz HTTP/1.0\r\n\r\n", 200},
            {get("/healthz/"), 404},
        };
        for (const auto &[request, status] : cases) {
            const Answer whole = ask(port, request);
            const Answer pieces = ask(port, request, 6);
            QVERIFY2(whole.status == status, request.constData());
            QCOMPARE(pieces.head, whole.head);
            QCOMPARE(pieces.body, whole.body);
        }
    }

    void metrics()
    {
        // An exposition larger than its connection's send buffer (which connections take from
        // the server's listening socket) is written in parts.
        const int sendBuffer = 16 * 1024;
        QCOMPARE(::setsockopt(int(server->front().listeningDescriptor()), SOL_SOCKET, SO_SNDBUF,
                              &sendBuffer, sizeof sendBuffer),
                 0);
        QByteArrayList many;
        for (int i = 0; i < 1000; ++i)
            many.append(relayComponent(u"c%1"_s.arg(i), u"Component %1"_s.arg(i), u"down"_s));
        fixture->addSource(u"Large"_s, "operational", "[" + many.join(',') + "]");
        fixture->runPass();
        const Answer answer = ask(port, get("/metrics"));
        QCOMPARE(answer.status, 200);
        QVERIFY(answer.body.size() > 4 * sendBuffer);
        QVERIFY(answer.body.endsWith("lanternic_passes_total 1\n"));
        QVERIFY(answer.head.contains("Content-Type: text/plain; version=0.0.4"));
        const QByteArray source = fixture->store.results().first().id.toUtf8();
        for (const QByteArray &line :
             {"lanternic_source_health{id=\"" + source + "\",name=\"GitHub\"} 2",
              "lanternic_component_health{source=\"" + source +
                  "\",id=\"git\",name=\"Git \\\"Ops\\\" \"} 2",
              "lanternic_source_up{id=\"" + source + "\"} 1",
              "lanternic_source_incidents{id=\"" + source + "\"} 0",
              "lanternic_source_maintenance{id=\"" + source + "\"} 0",
              QByteArray("lanternic_poll_interval_seconds 120"),
              QByteArray("lanternic_passes_total 1"),
              QByteArray("# TYPE lanternic_passes_total counter")})
            QVERIFY2(answer.body.contains(line + '\n'), line.constData());

        // Made a little after the pass, but made for every pass.
        fixture->runPass();
        QVERIFY(ask(port, get("/metrics")).body.endsWith("lanternic_passes_total 2\n"));
    }

    void refusedWithoutHarm()
    {
        fixture->runPass();
        const struct {
            QByteArray request;
            int status;
        } cases[] = {
            {get("/nowhere"), 404},
            {"POST /metrics HTTP/1.1\r\nHost: x\r\nContent-Length: 0\r\n\r\n", 405},
            {get("/metrics", "Content-Length: 5\r\n") + "hello", 413},
            {get("/metrics", "Transfer-Encoding: chunked\r\n"), 413},
            {get("/metrics", "X-Filler: " + QByteArray(9000, 'x') + "\r\n"), 431},
            {"\x16\x03\x01 not http at all\r\n\r\n", 400},
            {"GET /%6detrics HTTP/1.1\r\n\r\n", 200},
            {get("/"), 200},
        };
        for (const auto &[request, status] : cases) {
            QVERIFY2(ask(port, request).status == status, request.left(40).constData());
            QVERIFY2(ask(port, request, 6).status == status, request.left(40).constData());
        }

        // A body is refused from the head alone while the client is still sending it, and
        // none of it is kept.
        QTcpSocket uploader;
        uploader.connectToHost(QHostAddress::LocalHost, port);
        uploader.write("PUT /metrics HTTP/1.1\r\nContent-Length: 900000000\r\n\r\n");
        QByteArray refusal;
        for (int i = 0; i < 100 && !refusal.contains("\r\n\r\n"); ++i) {
            uploader.write(QByteArray(64 * 1024, 'x'));
            QTest::qWait(10);
            refusal += uploader.readAll();
        }
        QVERIFY(refusal.startsWith("HTTP/1.1 405"));
        QTRY_COMPARE(server->front().openConnections(), 0);
    }

    // Slow and idle clients of one address take no more than their share of the places, and
    // only for a few seconds counted from their first byte, however slowly they drip.
    void slowClientsKeepNobodyOut()
    {
        fixture->runPass();
        auto limits = server->front().limits();
        limits.head = std::chrono::milliseconds(600);
        // Far beyond any wait below: a drip that kept its place would keep it this long.
        limits.idle = std::chrono::minutes(10);
        server->front().setLimits(limits);
        std::vector<std::unique_ptr<QTcpSocket>> slow;
        for (int i = 0; i < limits.waitingPerAddress + 5; ++i) {
            slow.push_back(std::make_unique<QTcpSocket>());
            slow.back()->connectToHost(QHostAddress::LocalHost, port);
            slow.back()->write("GET /metrics HTTP/1.1\r\n");
        }
        QTRY_COMPARE(server->front().openConnections(), limits.waitingPerAddress);
        // Those beyond the share were closed at once.
        QTRY_COMPARE(std::count_if(slow.begin(), slow.end(),
                                   [](const auto &socket) {
                                       return socket->state() == QAbstractSocket::UnconnectedState;
                                   }),
                     5);

        // Another address, in pieces, and this one with a whole request, are still answered.
        QTcpSocket other;
        other.bind(QHostAddress(u"127.0.0.2"_s));
        other.connectToHost(QHostAddress::LocalHost, port);
        QVERIFY(other.waitForConnected(2000));
        other.write("GET /healthz HTTP/1.1\r\n");
        QTest::qWait(50);
        other.write("\r\n");
        QTRY_VERIFY(other.peek(12) == "HTTP/1.1 200");
        QCOMPARE(ask(port, get("/healthz")).status, 200);

        // Dripping does not keep a place past the head's time, counted from its first byte.
        QTcpSocket dripping;
        slow.clear();
        QTRY_COMPARE(server->front().openConnections(), 0);
        dripping.connectToHost(QHostAddress::LocalHost, port);
        QTimer drip;
        connect(&drip, &QTimer::timeout, &dripping, [&dripping] { dripping.write("X"); });
        drip.start(50);
        QTRY_COMPARE_WITH_TIMEOUT(dripping.state(), QAbstractSocket::UnconnectedState, 30'000);
        drip.stop();

        // Silence does not keep one past the idle time.
        limits.idle = std::chrono::milliseconds(300);
        server->front().setLimits(limits);
        QTcpSocket silent;
        silent.connectToHost(QHostAddress::LocalHost, port);
        QTRY_COMPARE_WITH_TIMEOUT(silent.state(), QAbstractSocket::UnconnectedState, 30'000);
        QCOMPARE(ask(port, get("/healthz")).status, 200);
    }

    // An answer the client leaves unread is not left to the kernel either: once the answer's
    // time is up the connection is reset, and what was queued for it goes.
    void unreadAnswersAreDropped()
    {
        auto limits = server->front().limits();
        limits.answer = std::chrono::milliseconds(300);
        server->front().setLimits(limits);
        // An exposition that fits one send, then one that does not.
        for (const int components : {150, 1000}) {
            QByteArrayList many;
            for (int i = 0; i < components; ++i)
                many.append(relayComponent(u"c%1"_s.arg(i), u"Component %1"_s.arg(i), u"down"_s));
            const QString name = u"Large %1"_s.arg(components);
            fixture->addSource(name, "operational", "[" + many.join(',') + "]");
            fixture->runPass();
            QTRY_VERIFY(server->answer({"GET", "/metrics", {}, {}}).contains(name.toUtf8()));

            const int client = ::socket(AF_INET, SOCK_STREAM, 0);
            const int receiveBuffer = 4096;
            ::setsockopt(client, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
            sockaddr_in address{};
            address.sin_family = AF_INET;
            address.sin_port = htons(port);
            address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            QCOMPARE(::connect(client, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
            const QByteArray request = get("/metrics");
            QCOMPARE(::send(client, request.constData(), size_t(request.size()), 0),
                     ssize_t(request.size()));
            char byte = 0;
            QTRY_COMPARE(::recv(client, &byte, 1, MSG_PEEK | MSG_DONTWAIT), ssize_t(1));
            QTRY_COMPARE(server->front().openConnections(), 0);
            QCOMPARE(queuedBytes(port), 0);
            ::close(client);
        }
    }

    // However many addresses hold waiting places without finishing a head, a quarter of the
    // places stay for addresses whose requests came whole before.
    void strangersLeavePlacesForKnownClients()
    {
        fixture->runPass();
        const HttpFront::Limits limits = server->front().limits();
        auto known = askInPieces(u"127.0.0.2"_s, port, "/healthz");
        known->write("\r\n");
        QTRY_VERIFY(known->peek(12) == "HTTP/1.1 200");
        std::vector<std::unique_ptr<QTcpSocket>> slow;
        const int addresses = limits.waiting / limits.waitingPerAddress;
        for (int i = 0; i < addresses * limits.waitingPerAddress; ++i)
            slow.push_back(askInPieces(u"127.0.1.%1"_s.arg(1 + i % addresses), port, "/metrics"));
        const int open = limits.waiting - limits.reservedForKnown;
        QTRY_COMPARE(std::count_if(slow.begin(), slow.end(),
                                   [](const auto &socket) {
                                       return socket->state() == QAbstractSocket::UnconnectedState;
                                   }),
                     slow.size() - open);
        QCOMPARE(server->front().openConnections(), open);

        known = askInPieces(u"127.0.0.2"_s, port, "/healthz");
        auto stranger = askInPieces(u"127.0.2.1"_s, port, "/healthz");
        QTest::qWait(50);
        known->write("\r\n");
        stranger->write("\r\n");
        QTRY_VERIFY(known->peek(12) == "HTTP/1.1 200");
        QTRY_COMPARE(stranger->state(), QAbstractSocket::UnconnectedState);
        QVERIFY(stranger->readAll().isEmpty());
    }

    // The health check fails once the loop has not finished a pass for three intervals, as a
    // clock that only moves forward counts them: the wall clock may jump either way.
    void staleLoop()
    {
        qint64 monotonic = 1'000'000;
        server->setMonotonicClock([&] { return monotonic; });
        fixture->runPass();
        QCOMPARE(ask(port, get("/healthz")).status, 200);
        const qint64 stale = 3 * fixture->store.pollInterval().count() + 1000;
        fixture->now = fixture->now.addSecs(3600);
        QCOMPARE(ask(port, get("/healthz")).status, 200);
        monotonic += stale;
        QCOMPARE(ask(port, get("/healthz")).status, 503);
        fixture->now = fixture->now.addSecs(-7200);
        fixture->runPass();
        QCOMPARE(ask(port, get("/healthz")).status, 200);
        QVERIFY(server->statistics().lastDurationSeconds > 0);
    }

    // Before the first pass the exposition is made as results come, never once per request.
    // From the start, the feed and the metrics carry each result as it comes, the sources not
    // checked yet as "Checking…"; the health check says no pass has finished. Neither answer is
    // made for a request of its own.
    void theFirstPassIsServedAsItComes()
    {
        HttpRequest metrics{"GET", "/metrics", {}, {}};
        QVERIFY(server->answer(metrics).contains("lanternic_passes_total 0\n"));
        QCOMPARE(server->answer(metrics).constData(), server->answer(metrics).constData());
        fixture->server.route("/feed1.json", {200, relayFeed("operational"), {}, false, 2000});
        fixture->startPass();
        QTRY_VERIFY(server->answer(metrics).contains("name=\"GitHub\"} 2\n"));
        const Answer feed = ask(port, get("/lanternic.json"));
        QCOMPARE(feed.status, 200);
        QVERIFY(feed.body.contains(R"("name":"GitHub","status":"down")"));
        QVERIFY(feed.body.contains(R"("label":"Checking…","name":"Linear","status":"unknown")"));
        const Answer health = ask(port, get("/healthz"));
        QCOMPARE(health.status, 503);
        QCOMPARE(health.body, "no pass has finished yet\n");
        QCOMPARE(server->statistics().passes, 0);
        QTRY_COMPARE_WITH_TIMEOUT(ask(port, get("/healthz")).status, 200, 5000);
        QVERIFY(server->statistics().lastDurationSeconds > 1.9);
    }

    // A watcher that reads its own feed back through another sees the loop, and says so, while
    // the watchers a feed passed through go on in its own.
    void relayLoops()
    {
        fixture->store.setRelayIdentity(u"watcher-a"_s);
        fixture->addSource(u"Looped"_s, "down", "[]", {}, R"(,"via":["watcher-b","watcher-a"])");
        fixture->addSource(u"Upstream"_s, "operational", "[]", {}, R"(,"via":["watcher-c",7])");
        fixture->runPass();
        const QList<SourceResult> &results = fixture->store.results();
        QCOMPARE(results[2].health, Health::unknown);
        QCOMPARE(results[2].error, u"This relay feed already passed through this watcher"_s);
        QCOMPARE(results[3].error, std::nullopt);
        const QByteArray feed = ask(port, get("/lanternic.json")).body;
        QVERIFY2(feed.contains(R"("via":["watcher-a","watcher-c"])"), feed.constData());
    }
};

QTEST_GUILESS_MAIN(TestServe)
#include "test_serve.moc"
