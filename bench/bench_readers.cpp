// Reading a large Statuspage summary: through the whole detection chain versus the
// Statuspage reader alone. The chain parses the body once, so the two should be close. Then a
// body that no reader accepts, of 5 KB and 1 MB, through all twelve shape tests against one
// reader's parse of it; a 1 MB status feed read whole; a 1 MB HTML page through the whole chain
// against the JSON readers alone (what the feeds' shape tests add); and the catalogue's search
// as it answers each keystroke. Last, each platform's recorded sample through the whole chain,
// in MB/s.

#include "config/catalog.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/platforms.h"
#include "sources/readers/statuspage.h"
#include "sources/sourcecheck.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>
#include <benchmark/benchmark.h>

using namespace lanternic;
using namespace Qt::StringLiterals;

namespace {

// About 300 components in 30 groups, shaped like a real page's summary (about 200 KB).
QByteArray largeSummary()
{
    QJsonArray components;
    for (int g = 0; g < 30; ++g) {
        const QString groupId = u"grp%1"_s.arg(g, 8, 10, QLatin1Char('0'));
        QJsonObject group{{u"id"_s, groupId},
                          {u"name"_s, u"Region group %1"_s.arg(g)},
                          {u"status"_s, u"operational"_s},
                          {u"group"_s, true},
                          {u"group_id"_s, QJsonValue()},
                          {u"components"_s, QJsonArray{u"a"_s, u"b"_s, u"c"_s}}};
        components.append(group);
        for (int i = 0; i < 9; ++i) {
            const int n = g * 9 + i;
            components.append(QJsonObject{
                {u"id"_s, u"cmp%1"_s.arg(n, 9, 10, QLatin1Char('0'))},
                {u"name"_s, u"Service component number %1"_s.arg(n)},
                {u"status"_s, n % 37 == 0 ? u"partial_outage"_s : u"operational"_s},
                {u"created_at"_s, u"2019-11-13T18:02:19.432Z"_s},
                {u"updated_at"_s, u"2026-11-21T03:45:51.101Z"_s},
                {u"position"_s, i},
                {u"description"_s,
                 u"Requests, webhooks and background processing for this part of the service, "
                 "served from several regions around the world"_s},
                {u"showcase"_s, false},
                {u"start_date"_s, QJsonValue()},
                {u"group_id"_s, groupId},
                {u"page_id"_s, u"kctbh9vrtdwd"_s},
                {u"group"_s, false},
                {u"only_show_if_degraded"_s, false}});
        }
    }
    const QJsonObject summary{
        {u"page"_s, QJsonObject{{u"id"_s, u"kctbh9vrtdwd"_s},
                                {u"name"_s, u"Example"_s},
                                {u"url"_s, u"https://status.example.com"_s}}},
        {u"components"_s, components},
        {u"incidents"_s, QJsonArray()},
        {u"scheduled_maintenances"_s, QJsonArray()},
        {u"status"_s, QJsonObject{{u"indicator"_s, u"minor"_s},
                                  {u"description"_s, u"Partially Degraded Service"_s}}}};
    return QJsonDocument(summary).toJson(QJsonDocument::Indented);
}

JSONSource source()
{
    JSONSource source;
    source.id = u"example"_s;
    source.name = u"Example"_s;
    source.homeURL = QUrl(u"https://status.example.com"_s);
    return source;
}

void checkReading(benchmark::State &state, const SourceResult &result)
{
    if (result.components.size() != 270 || result.health != Health::degraded)
        state.SkipWithError("the summary was not read as expected");
}

void DetectionChain(benchmark::State &state)
{
    const QByteArray body = largeSummary();
    const JSONSource s = source();
    for (auto _ : state) {
        SourceResult result = SourceCheck::read(s, body);
        benchmark::DoNotOptimize(result);
    }
    checkReading(state, SourceCheck::read(s, body));
    state.SetBytesProcessed(state.iterations() * body.size());
    state.counters["bodyBytes"] = double(body.size());
}

void StatuspageReaderAlone(benchmark::State &state)
{
    const QByteArray body = largeSummary();
    const JSONSource s = source();
    // The chain parses once too, so the parse is part of the reader's cost here.
    auto read = [&] { return StatuspageSource::parse(s, parseJson(body)); };
    for (auto _ : state) {
        auto reading = read();
        benchmark::DoNotOptimize(reading);
    }
    checkReading(state, *read());
    state.SetBytesProcessed(state.iterations() * body.size());
}

// JSON of about the given size that is no status document: an export of some other service.
QByteArray foreignDocument(qsizetype size)
{
    QJsonArray rows;
    QByteArray document;
    for (int i = 0; document.size() < size; ++i) {
        rows.append(QJsonObject{{u"row"_s, i},
                                {u"label"_s, u"An entry of some export, number %1"_s.arg(i)},
                                {u"tags"_s, QJsonArray{u"alpha"_s, u"beta"_s}}});
        if (i % 4 == 0)
            document = QJsonDocument(QJsonObject{{u"export"_s, rows}}).toJson();
    }
    return QJsonDocument(QJsonObject{{u"export"_s, rows}}).toJson();
}

void UnrecognizedChain(benchmark::State &state)
{
    const QByteArray body = foreignDocument(state.range(0));
    const JSONSource s = source();
    for (auto _ : state) {
        SourceResult result = SourceCheck::read(s, body);
        benchmark::DoNotOptimize(result);
    }
    if (SourceCheck::read(s, body).detail != u"Unrecognized status format"_s)
        state.SkipWithError("a reader accepted the foreign document");
    state.counters["bodyBytes"] = double(body.size());
}

void UnrecognizedOneReader(benchmark::State &state)
{
    const QByteArray body = foreignDocument(state.range(0));
    const JSONSource s = source();
    for (auto _ : state) {
        auto reading = StatuspageSource::parse(s, parseJson(body));
        benchmark::DoNotOptimize(reading);
    }
}

// A status feed of about 1 MB: 1,000 items (as many as are read) of about 1 KB, in 250
// incidents of four updates each.
QByteArray largeFeed()
{
    QByteArray feed = "<?xml version=\"1.0\"?><rss version=\"2.0\"><channel><title>T</title>";
    const QByteArray text(900, 'x');
    for (int i = 0; i < 1000; ++i) {
        feed += "<item><title>Investigating: incident " + QByteArray::number(i / 4) +
                "</title><link>https://status.example.com/incidents/" + QByteArray::number(i / 4) +
                "</link><description>&lt;p&gt;" + text +
                "&lt;/p&gt;</description><pubDate>Sun, 22 Nov 2026 19:00:00 GMT</pubDate></item>";
    }
    return feed + "</channel></rss>";
}

void FeedOneMegabyte(benchmark::State &state)
{
    const QByteArray body = largeFeed();
    const JSONSource s = source();
    const QDateTime now = QDateTime::fromString(u"2026-11-22T20:00:00Z"_s, Qt::ISODate);
    for (auto _ : state) {
        SourceResult result = SourceCheck::read(s, body, now);
        benchmark::DoNotOptimize(result);
    }
    if (SourceCheck::read(s, body, now).incidents.size() != 50)
        state.SkipWithError("the feed was not read as expected");
    state.counters["bodyBytes"] = double(body.size());
}

// What Qt's XML tokenizer alone takes over the same feed: the floor under any reading of it.
void FeedTokenizerAlone(benchmark::State &state)
{
    const QByteArray body = largeFeed();
    for (auto _ : state) {
        QXmlStreamReader xml(body);
        while (!xml.atEnd())
            xml.readNext();
    }
}

// A web page of about 1 MB, as a status page's address answers when it moved.
QByteArray htmlPage(bool doctype)
{
    QByteArray page = doctype ? "<!DOCTYPE html>\n<html><head><title>Status</title></head><body>"
                              : "<html><head><title>Status</title></head><body>";
    while (page.size() < 1024 * 1024)
        page += "<div class=\"row\"><span>Component</span><span>Operational</span></div>\n";
    return page + "</body></html>";
}

void HtmlPageWholeChain(benchmark::State &state)
{
    const QByteArray body = htmlPage(state.range(0));
    const JSONSource s = source();
    for (auto _ : state) {
        SourceResult result = SourceCheck::read(s, body);
        benchmark::DoNotOptimize(result);
    }
    if (SourceCheck::read(s, body).detail != u"Unrecognized status format"_s)
        state.SkipWithError("a reader accepted the page");
}

void HtmlPageJsonReadersOnly(benchmark::State &state)
{
    const QByteArray body = htmlPage(state.range(0));
    const JSONSource s = source();
    for (auto _ : state) {
        const JsonDocument document = parseJson(body);
        for (const Platform &platform : Platforms::all()) {
            if (platform.read) {
                auto reading = platform.read(s, document);
                benchmark::DoNotOptimize(reading);
            }
        }
    }
}

// One search a keystroke, as "Add service…" runs it while "cloudflare" is typed.
void CatalogSearchPerKeystroke(benchmark::State &state)
{
    const Catalog &catalog = Catalog::builtIn();
    const QString typed = u"cloudflare"_s;
    qsizetype found = 0;
    for (auto _ : state) {
        for (qsizetype n = 1; n <= typed.size(); ++n)
            found += catalog.search({typed.left(n)}).size();
    }
    benchmark::DoNotOptimize(found);
    state.SetItemsProcessed(state.iterations() * typed.size());
    state.counters["entries"] = double(catalog.entries().size());
}

} // namespace

// Every recorded sample, read as a check reads it: the detection chain from the body.
const bool samplesRegistered = [] {
    const QDir samples(QStringLiteral(LANTERNIC_SAMPLES_DIR));
    for (const QString &name : samples.entryList(QDir::Files, QDir::Name)) {
        QFile file(samples.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray body = file.readAll();
        JSONSource s = source();
        // Azure's feed is known by the host it comes from.
        if (name.startsWith(u"azure"_s))
            s.homeURL = QUrl(u"https://azure.status.microsoft/en-us/status/feed/"_s);
        benchmark::RegisterBenchmark((u"Sample/"_s + name).toUtf8().constData(),
                                     [body, s](benchmark::State &state) {
                                         for (auto _ : state) {
                                             SourceResult result = SourceCheck::read(s, body);
                                             benchmark::DoNotOptimize(result);
                                         }
                                         if (SourceCheck::read(s, body).error)
                                             state.SkipWithError("the sample was not read");
                                         state.SetBytesProcessed(state.iterations() * body.size());
                                     })
            ->Unit(benchmark::kMicrosecond);
    }
    return true;
}();

BENCHMARK(DetectionChain)->Unit(benchmark::kMicrosecond);
BENCHMARK(StatuspageReaderAlone)->Unit(benchmark::kMicrosecond);
BENCHMARK(UnrecognizedChain)->Arg(5 * 1024)->Arg(1024 * 1024)->Unit(benchmark::kMicrosecond);
BENCHMARK(UnrecognizedOneReader)->Arg(5 * 1024)->Arg(1024 * 1024)->Unit(benchmark::kMicrosecond);
BENCHMARK(FeedOneMegabyte)->Unit(benchmark::kMicrosecond);
BENCHMARK(FeedTokenizerAlone)->Unit(benchmark::kMicrosecond);
BENCHMARK(HtmlPageWholeChain)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(HtmlPageJsonReadersOnly)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(CatalogSearchPerKeystroke)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
