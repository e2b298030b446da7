// The watcher's HTTP side over loopback: its routes, the relay round trip, conditional
// requests, and requests and connections it must refuse without harm.

#include "serve/watchserver.h"
#include "sources/jsondecoder.h"
#include "sources/jsonsource.h"
#include "support/fixtures.h"
#include "support/storefixture.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTest>
#include <sys/socket.h>

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
        QCOMPARE(ask(port, get("/healthz")).status, 503);
        QCOMPARE(ask(port, get("/lanternic.json")).status, 503);
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
        const SourceResult read = team.read(feed.body);
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

        // A client that does not take its answer loses it.
        auto limits = server->front().limits();
        limits.answer = std::chrono::milliseconds(300);
        server->front().setLimits(limits);
        QTcpSocket reader;
        reader.setReadBufferSize(1);
        reader.connectToHost(QHostAddress::LocalHost, port);
        reader.write(get("/metrics"));
        QTRY_COMPARE(server->front().openConnections(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(server->front().openConnections(), 0, 5000);
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
        limits.idle = std::chrono::milliseconds(2500);
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

        // Dripping does not keep a place past the head's time, nor does silence.
        QTcpSocket dripping, silent;
        slow.clear();
        QTRY_COMPARE(server->front().openConnections(), 0);
        for (QTcpSocket *socket : {&dripping, &silent})
            socket->connectToHost(QHostAddress::LocalHost, port);
        QElapsedTimer clock;
        clock.start();
        while (dripping.state() == QAbstractSocket::ConnectedState && clock.elapsed() < 3000) {
            dripping.write("X");
            QTest::qWait(50);
        }
        QVERIFY(clock.elapsed() < 1500);
        QTRY_COMPARE_WITH_TIMEOUT(silent.state(), QAbstractSocket::UnconnectedState, 6000);
        QCOMPARE(ask(port, get("/healthz")).status, 200);
    }

    // A result is served as it arrives, while the pass waits for a slower source.
    void resultsAreServedAsTheyArrive()
    {
        fixture->runPass();
        fixture->server.route("/feed0.json", {200, relayFeed("operational"), {}, false, 3000});
        fixture->server.route("/feed1.json", {200, relayFeed("down"), {}});
        fixture->store.refresh();
        QTRY_VERIFY_WITH_TIMEOUT(
            ask(port, get("/lanternic.json")).body.contains(R"("status":"down")"), 1500);
        QVERIFY(fixture->store.isRefreshing());
        QTRY_VERIFY(ask(port, get("/metrics")).body.contains("name=\"Linear\"} 2\n"));
        QVERIFY(fixture->store.isRefreshing());
    }

    // The health check fails once the loop has not finished a pass for three intervals.
    void staleLoop()
    {
        fixture->runPass();
        QCOMPARE(ask(port, get("/healthz")).status, 200);
        fixture->now = fixture->now.addMSecs(3 * fixture->store.pollInterval().count() + 1000);
        QCOMPARE(ask(port, get("/healthz")).status, 503);
        fixture->runPass();
        QCOMPARE(ask(port, get("/healthz")).status, 200);
        QVERIFY(server->statistics().lastDurationSeconds > 0);
    }
};

QTEST_GUILESS_MAIN(TestServe)
#include "test_serve.moc"
