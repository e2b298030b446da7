// The watcher's HTTP side over loopback: its routes, the relay round trip, conditional
// requests, and requests and connections it must refuse without harm.

#include "serve/watchserver.h"
#include "sources/jsondecoder.h"
#include "sources/jsonsource.h"
#include "support/fixtures.h"
#include "support/storefixture.h"

#include <QTcpServer>
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
        fixture->addSource(u"Linear"_s, "operational");
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
        QCOMPARE(::setsockopt(int(server->servers().first()->socketDescriptor()), SOL_SOCKET,
                              SO_SNDBUF, &sendBuffer, sizeof sendBuffer),
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
        QCOMPARE(ask(port, get("/nowhere")).status, 404);
        QCOMPARE(ask(port, "POST /metrics HTTP/1.1\r\nHost: x\r\nContent-Length: 0\r\n\r\n").status,
                 405);
        const Answer huge =
            ask(port, get("/metrics", "X-Filler: " + QByteArray(9000, 'x') + "\r\n"));
        QVERIFY(huge.status == 431 || huge.status == 0);
        ask(port, "\x16\x03\x01 not http at all\r\n\r\n");

        QTest::qWait(300); // the connections above are closed on both sides by now
        // With 100 connections open, the next one waits until one of them closes. Each has begun
        // its request (the kernel may hold back one that has sent nothing), and there are more
        // than the server takes in one turn, but few enough for the rest to fit its queue.
        std::vector<std::unique_ptr<QTcpSocket>> idle;
        for (int i = 0; i < 300; ++i) {
            idle.push_back(std::make_unique<QTcpSocket>());
            idle.back()->connectToHost(QHostAddress::LocalHost, port);
            idle.back()->write("GET /metrics HTTP/1.1\r\n");
        }
        QTest::qWait(500);
        QTcpSocket waiting;
        waiting.connectToHost(QHostAddress::LocalHost, port);
        waiting.write(get("/healthz"));
        QTest::qWait(500);
        QVERIFY(waiting.readAll().isEmpty());
        idle.clear();
        QByteArray answer;
        QTRY_VERIFY_WITH_TIMEOUT((answer += waiting.readAll()).startsWith("HTTP/1.1 200"), 10'000);

        // Nor do connections that send nothing, or half a request, keep their places.
        server->setRequestTimeout(std::chrono::milliseconds(200));
        QTcpSocket silent, halfway;
        for (QTcpSocket *socket : {&silent, &halfway})
            socket->connectToHost(QHostAddress::LocalHost, port);
        halfway.write("GET /metrics HTTP/1.1\r\n");
        QTRY_VERIFY_WITH_TIMEOUT(silent.state() == QAbstractSocket::UnconnectedState &&
                                     halfway.state() == QAbstractSocket::UnconnectedState,
                                 5000);
        // The loop goes on, and so does the server. (Editing the sources in the first pass
        // may have started one more by now.)
        const qint64 passes = server->statistics().passes;
        fixture->runPass();
        QCOMPARE(ask(port, get("/healthz")).status, 200);
        QVERIFY(server->statistics().passes > passes);
    }
};

QTEST_GUILESS_MAIN(TestServe)
#include "test_serve.moc"
