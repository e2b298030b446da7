#include "sources/jsonsource.h"
#include "sources/sourcekindstore.h"
#include "support/fixtures.h"
#include "support/loopbackserver.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace lanternic;
using namespace Qt::StringLiterals;

// Checks and kind probes against a loopback server, and the kind cache they fill.
class TestFetch : public QObject {
    Q_OBJECT

    LoopbackServer server;
    network::Session session;
    QTemporaryDir dir;

private Q_SLOTS:
    void checks_data()
    {
        QTest::addColumn<LoopbackServer::Response>("response");
        QTest::addColumn<QString>("detail");
        QTest::addColumn<QString>("error"); // how it begins
        const QString unrecognized =
            u"Response was not lanternic.v1, incident.io, Updog, nor a Statuspage summary"_s;
        QTest::newRow("summary") << LoopbackServer::Response{200,
                                                             fixture(u"statuspage-summary.json"_s),
                                                             {}}
                                 << u"Git Operations \u2014 degraded"_s << QString();
        QTest::newRow("the body decides, not the address")
            << LoopbackServer::Response{200, fixture(u"relay-feed.json"_s), {}}
            << u"CI runners \u2014 degraded"_s << QString();
        QTest::newRow("404 with a JSON body")
            << LoopbackServer::Response{404, "{}", {}} << u"Could not reach status page"_s
            << u"Bad server response (HTTP 404)"_s;
        QTest::newRow("500 with a summary")
            << LoopbackServer::Response{500, R"({"status":{"indicator":"none"}})", {}}
            << u"Could not reach status page"_s << u"Bad server response (HTTP 500)"_s;
        QTest::newRow("204") << LoopbackServer::Response{204, {}, {}}
                             << u"Unrecognized status format"_s << unrecognized;
    }

    void checks()
    {
        QFETCH(LoopbackServer::Response, response);
        server.route("/api/v2/summary.json", response);
        JSONSource source;
        source.id = u"s"_s;
        source.url = server.url("/api/v2/summary.json");
        source.homeURL = QUrl(u"https://home.example"_s);
        std::optional<SourceResult> result;
        source.check(session, this, [&](SourceResult r) { result = std::move(r); });
        QVERIFY(QTest::qWaitFor([&] { return result.has_value(); }, 10'000));
        QTEST(result->detail, "detail");
        QFETCH(QString, error);
        QVERIFY2(result->error.value_or(QString()).startsWith(error), qPrintable(*result->error));
        if (!error.isEmpty())
            QCOMPARE(result->url, QUrl(u"https://home.example"_s));
        QCOMPARE(server.userAgents().last(), "Lanternic/" LANTERNIC_VERSION);
    }

    void probes_data()
    {
        QTest::addColumn<int>("status"); // 0: nobody answers
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<std::optional<SourceKind>>("kind");
        QTest::newRow("widget") << 200 << fixture(u"incidentio-widget.json"_s)
                                << std::optional(SourceKind::incidentio);
        QTest::newRow("widget shape, other status")
            << 203 << QByteArray(R"({"subpages":[]})") << std::optional(SourceKind::atlassian);
        QTest::newRow("404") << 404 << QByteArray() << std::optional(SourceKind::atlassian);
        QTest::newRow("unreachable") << 0 << QByteArray() << std::optional<SourceKind>();
    }

    void probes()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        server.route("/proxy/Status.Example.COM", {status, body, {}});
        network::Session via(loopback(u"status.example.com"_s, status ? server.port() : 1));
        std::optional<std::optional<SourceKind>> kind;
        SourceKindStore::probe(u"Status.Example.COM"_s, via, this,
                               [&](std::optional<SourceKind> k) { kind = k; });
        QVERIFY(QTest::qWaitFor([&] { return kind.has_value(); }, 10'000));
        QTEST(*kind, "kind");
        if (status)
            QCOMPARE(server.requests().last(), "/proxy/Status.Example.COM");
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
        QSettings settings(dir.filePath(QString::fromLatin1(QTest::currentDataTag())),
                           QSettings::IniFormat);
        settings.setValue(u"Lanternic.sourceKinds"_s, stored);
        SourceKindStore store(settings);
        QTEST(int(store.cache().size()), "entries");
        // Recording writes the whole cache through, by host in lower case.
        store.record(u"Status.Example.COM"_s, SourceKind::incidentio);
        QCOMPARE(SourceKindStore(settings).cache().value(u"status.example.com"_s),
                 SourceKind::incidentio);
        QCOMPARE(settings.value(u"Lanternic.sourceKinds"_s).toMap().size(), store.cache().size());
    }
};

QTEST_GUILESS_MAIN(TestFetch)
#include "test_fetch.moc"
