#include "sources/jsonsource.h"
#include "sources/network.h"
#include "sources/sourcekindstore.h"
#include "support/fixtures.h"
#include "support/loopbackserver.h"

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
    network::Session *session = nullptr;

    SourceResult check(const QUrl &url)
    {
        std::optional<SourceResult> result;
        sourceFor(url).check(*session, this, [&](SourceResult r) { result = std::move(r); });
        if (!QTest::qWaitFor([&] { return result.has_value(); }, 10'000))
            qFatal("check of %s never finished", qPrintable(url.toString()));
        return *result;
    }

    std::optional<SourceKind> probe(network::Session &via, const QString &host)
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
        session = new network::Session(this);
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
        QTest::newRow("nobody listening")
            << QByteArray("unreachable") << u"Could not reach status page"_s
            << u"Failed to connect to 127.0.0.1 port 1"_s;
    }

    void failures()
    {
        server->route("/broken", {500, "{\"status\":{\"indicator\":\"none\"}}", {}});
        server->route("/empty", {204, {}, {}});
        server->route("/html",
                      {200, "<!doctype html><p>Status</p>", {{"Content-Type", "text/html"}}});
        QFETCH(QByteArray, path);
        const SourceResult result =
            check(path == "unreachable" ? QUrl(u"http://127.0.0.1:1/"_s) : server->url(path));
        QCOMPARE(result.health, Health::unknown);
        QTEST(result.detail, "detail");
        QFETCH(QString, error);
        QVERIFY2(result.error.value_or(QString()).startsWith(error), qPrintable(*result.error));
        QCOMPARE(result.url, QUrl(u"https://home.example"_s));
        QVERIFY(result.components.isEmpty());
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
        network::Session via(loopback(u"status.example.com"_s, server->port()));
        QTEST(probe(via, u"Status.Example.COM"_s), "kind");
        QCOMPARE(server->hosts(),
                 QList<QByteArray>{"status.example.com:" + QByteArray::number(server->port())});
        QCOMPARE(server->requests(), QList<QByteArray>{"/proxy/Status.Example.COM"});
    }

    void unreachableProbeFindsNothing()
    {
        network::Session via(loopback(u"status.example.com"_s, 1));
        QCOMPARE(probe(via, u"status.example.com"_s), std::nullopt);
    }

    void invalidHostIsNotProbed()
    {
        QCOMPARE(probe(*session, u"exa mple"_s), std::nullopt);
        QVERIFY(server->requests().isEmpty());
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
