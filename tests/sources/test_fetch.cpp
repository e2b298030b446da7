#include "sources/jsonsource.h"
#include "sources/network.h"
#include "sources/sourcekindstore.h"
#include "support/fixtures.h"
#include "support/loopbackserver.h"
#include "support/redirectingsession.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

namespace {

JSONSource sourceFor(const QUrl &url)
{
    JSONSource source;
    source.id = u"s"_s;
    source.name = u"Source"_s;
    source.url = url;
    source.homeURL = QUrl(u"https://home.example"_s);
    return source;
}

} // namespace

class TestFetch : public QObject {
    Q_OBJECT

    LoopbackServer *server = nullptr;
    QNetworkAccessManager *session = nullptr;

    SourceResult check(const QUrl &url)
    {
        std::optional<SourceResult> result;
        sourceFor(url).check(*session, this, [&](SourceResult r) { result = std::move(r); });
        if (!QTest::qWaitFor([&] { return result.has_value(); }, 10'000))
            qFatal("check of %s never finished", qPrintable(url.toString()));
        return *result;
    }

    std::optional<SourceKind> probe(QNetworkAccessManager &via, const QString &host)
    {
        bool finished = false;
        std::optional<SourceKind> kind;
        SourceKindStore::probe(host, via, this, [&](std::optional<SourceKind> k) {
            kind = k;
            finished = true;
        });
        if (!QTest::qWaitFor([&] { return finished; }, 10'000))
            qFatal("probe of %s never finished", qPrintable(host));
        return kind;
    }

private Q_SLOTS:
    void init()
    {
        server = new LoopbackServer(this);
        session = new QNetworkAccessManager(this);
        network::configureSession(*session);
    }

    void cleanup()
    {
        delete session;
        delete server;
    }

    void readsWhatTheServerSends()
    {
        server->route("/api/v2/summary.json", {200, fixture(u"statuspage-summary.json"_s), {}});
        const SourceResult result = check(server->url("/api/v2/summary.json"));
        QCOMPARE(result.health, Health::degraded);
        QCOMPARE(result.detail, u"Git Operations \u2014 degraded"_s);
        QCOMPARE(result.url, QUrl(u"https://www.githubstatus.com"_s));
        QCOMPARE(server->userAgents(), QList<QByteArray>{"Lanternic/" LANTERNIC_VERSION});
    }

    void detectionIgnoresTheAddress()
    {
        server->route("/api/v2/summary.json", {200, fixture(u"relay-feed.json"_s), {}});
        QCOMPARE(check(server->url("/api/v2/summary.json")).name, u"Build farm"_s);
    }

    void failures_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QString>("detail");
        QTest::addColumn<QString>("error");
        QTest::newRow("404 with a JSON body")
            << QByteArray("/missing") << u"Could not reach status page"_s
            << u"Bad server response (HTTP 404)"_s;
        QTest::newRow("500") << QByteArray("/broken") << u"Could not reach status page"_s
                             << u"Bad server response (HTTP 500)"_s;
        QTest::newRow("204 without a body")
            << QByteArray("/empty") << u"Unrecognized status format"_s
            << u"Response was not lanternic.v1, incident.io, Updog, nor a Statuspage summary"_s;
        QTest::newRow("HTML page")
            << QByteArray("/html") << u"Unrecognized status format"_s
            << u"Response was not lanternic.v1, incident.io, Updog, nor a Statuspage summary"_s;
        QTest::newRow("body over 16 MiB") << QByteArray("/huge") << u"Could not reach status page"_s
                                          << u"The response is larger than 16 MiB"_s;
    }

    void failures()
    {
        server->route("/broken", {500, "{\"status\":{\"indicator\":\"none\"}}", {}});
        server->route("/empty", {204, {}, {}});
        server->route("/html",
                      {200, "<!doctype html><p>Status</p>", {{"Content-Type", "text/html"}}});
        server->route("/huge", {200, QByteArray(network::maximumBodySize + 1, ' '), {}});
        QFETCH(QByteArray, path);
        const SourceResult result = check(server->url(path));
        QCOMPARE(result.health, Health::unknown);
        QTEST(result.detail, "detail");
        QTEST(result.error.value_or(QString()), "error");
        QCOMPARE(result.url, QUrl(u"https://home.example"_s));
        QVERIFY(result.components.isEmpty());
    }

    void connectionRefused()
    {
        const QUrl url = server->url("/gone");
        delete server;
        server = nullptr;
        const SourceResult result = check(url);
        QCOMPARE(result.detail, u"Could not reach status page"_s);
        QVERIFY2(result.error && result.error->contains(u"refused"_s, Qt::CaseInsensitive),
                 qPrintable(result.error.value_or(QString())));
    }

    void followsRedirects()
    {
        server->route("/old", {301, {}, {{"Location", server->url("/new").toEncoded()}}});
        server->route("/new", {200, fixture(u"relay-feed.json"_s), {}});
        QCOMPARE(check(server->url("/old")).name, u"Build farm"_s);
    }

    void silentServerTimesOut()
    {
        server->route("/silent", {200, {}, {}, true});
        session->setTransferTimeout(300);
        const SourceResult result = check(server->url("/silent"));
        QCOMPARE(result.detail, u"Could not reach status page"_s);
        QCOMPARE(result.error, u"The request timed out"_s);
    }

    void destroyingTheContextCancels()
    {
        server->route("/silent", {200, {}, {}, true});
        bool called = false;
        auto *context = new QObject;
        sourceFor(server->url("/silent")).check(*session, context, [&](SourceResult) {
            called = true;
        });
        QTRY_COMPARE(server->requests().size(), 1);
        delete context;
        QTest::qWait(100);
        QVERIFY(!called);
    }

    void manyChecksAtOnce()
    {
        server->route("/feed", {200, fixture(u"relay-feed.json"_s), {}});
        int finished = 0;
        for (int i = 0; i < 60; ++i) {
            sourceFor(server->url("/feed?n=" + QByteArray::number(i)))
                .check(*session, this, [&](SourceResult r) { finished += r.error ? 0 : 1; });
        }
        QTRY_COMPARE_WITH_TIMEOUT(finished, 60, 10'000);
    }

    void probe_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<std::optional<SourceKind>>("kind");
        QTest::newRow("widget") << 200 << fixture(u"incidentio-widget.json"_s)
                                << std::optional(SourceKind::incidentio);
        QTest::newRow("widget shape with another status")
            << 203 << QByteArray(R"({"subpages":[]})") << std::optional(SourceKind::atlassian);
        QTest::newRow("404") << 404 << QByteArray() << std::optional(SourceKind::atlassian);
        QTest::newRow("other document")
            << 200 << fixture(u"statuspage-summary.json"_s) << std::optional(SourceKind::atlassian);
    }

    void probe()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        server->route("/proxy/Status.Example.COM", {status, body, {}});
        RedirectingSession via(server->url("/"));
        QTEST(probe(via, u"Status.Example.COM"_s), "kind");
        QCOMPARE(via.requestedHosts, QStringList{u"status.example.com"_s});
        QCOMPARE(server->requests(), QList<QByteArray>{"/proxy/Status.Example.COM"});
    }

    void unreachableProbeFindsNothing()
    {
        const QUrl url = server->url("/");
        delete server;
        server = nullptr;
        RedirectingSession via(url);
        QCOMPARE(probe(via, u"status.example.com"_s), std::nullopt);
    }

    void invalidHostIsNotProbed()
    {
        RedirectingSession via(server->url("/"));
        QCOMPARE(probe(via, u"exa mple"_s), std::nullopt);
        QVERIFY(via.requestedHosts.isEmpty());
    }

    void kindCacheLoading_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<int>("entries");
        QTest::newRow("unknown kinds dropped")
            << QVariant(
                   QVariantMap{{u"a.example"_s, u"incidentio"_s}, {u"b.example"_s, u"other"_s}})
            << 1;
        QTest::newRow("a number spoils the whole map")
            << QVariant(QVariantMap{{u"a.example"_s, u"incidentio"_s}, {u"b.example"_s, 3}}) << 0;
        QTest::newRow("not a map") << QVariant(u"incidentio"_s) << 0;
        QTest::newRow("absent") << QVariant() << 0;
    }

    void kindCacheLoading()
    {
        QFETCH(QVariant, stored);
        QTemporaryDir dir;
        QSettings settings(dir.filePath(u"settings.ini"_s), QSettings::IniFormat);
        if (stored.isValid())
            settings.setValue(u"Lanternic.sourceKinds"_s, stored);
        SourceKindStore store(settings);
        QTEST(int(store.cache().size()), "entries");
    }

    void recordingWritesTheWholeCacheThrough()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"settings.ini"_s);
        {
            QSettings settings(path, QSettings::IniFormat);
            settings.setValue(u"Lanternic.sourceKinds"_s, 42);
            SourceKindStore store(settings);
            store.record(u"Status.Example.COM"_s, SourceKind::incidentio);
            store.record(u"other.example"_s, SourceKind::atlassian);
            store.record(u"other.example"_s, SourceKind::incidentio);
        }
        QSettings settings(path, QSettings::IniFormat);
        const QVariantMap expected{{u"status.example.com"_s, u"incidentio"_s},
                                   {u"other.example"_s, u"incidentio"_s}};
        QCOMPARE(settings.value(u"Lanternic.sourceKinds"_s).toMap(), expected);
        SourceKindStore reloaded(settings);
        QCOMPARE(reloaded.cache().value(u"status.example.com"_s), SourceKind::incidentio);
    }
};

QTEST_GUILESS_MAIN(TestFetch)
#include "test_fetch.moc"
