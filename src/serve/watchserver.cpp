#include "serve/watchserver.h"

#include "present/relaydocument.h"
#include "present/statuspagesummary.h"
#include "store/lanternicstore.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QLocale>
#include <QTimer>
#include <zlib.h>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

QByteArray httpDate(const QDateTime &time)
{
    return QLocale::c()
        .toString(time.toUTC(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"))
        .toLatin1();
}

// The body as a gzip member, or empty when zlib fails. Made every pass, so at the fastest level,
// which already shrinks an exposition some twenty times.
QByteArray gzip(const QByteArray &data)
{
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY) !=
        Z_OK)
        return {};
    QByteArray out(qsizetype(deflateBound(&stream, uLong(data.size()))), Qt::Uninitialized);
    // zlib reads the input through a pointer to non-const, but does not write to it.
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.constData()));
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef *>(out.data());
    stream.avail_out = uInt(out.size());
    const bool done = deflate(&stream, Z_FINISH) == Z_STREAM_END;
    out.resize(done ? qsizetype(stream.total_out) : 0);
    deflateEnd(&stream);
    return out;
}

// The next piece of rest up to separator, trimmed; rest keeps what follows it.
QByteArrayView nextPiece(QByteArrayView &rest, char separator)
{
    const qsizetype end = rest.indexOf(separator);
    const QByteArrayView piece = end < 0 ? rest : rest.first(end);
    rest = end < 0 ? QByteArrayView() : rest.sliced(end + 1);
    return piece.trimmed();
}

// Whether an Accept-Encoding header takes gzip: the first of "gzip", "x-gzip" and "*" it lists
// decides, unless its weight is zero. Read in place, as it is for every request.
bool acceptsGzip(QByteArrayView header)
{
    while (!header.isEmpty()) {
        QByteArrayView parameters = nextPiece(header, ',');
        const QByteArrayView coding = nextPiece(parameters, ';');
        if (coding.compare("gzip", Qt::CaseInsensitive) != 0 &&
            coding.compare("x-gzip", Qt::CaseInsensitive) != 0 && coding != "*")
            continue;
        while (!parameters.isEmpty()) {
            const QByteArrayView weight = nextPiece(parameters, ';');
            if (weight.startsWith("q=") && weight.sliced(2).toDouble() == 0)
                return false;
        }
        return true;
    }
    return false;
}

const QByteArray plainText = "text/plain; charset=utf-8";
const QByteArray metricsType = "text/plain; version=0.0.4; charset=utf-8";

QByteArray entityTag(const QByteArray &tag, bool gzipped)
{
    return '"' + tag + (gzipped ? "-gzip\"" : "\"");
}

// An answer of the last pass as it is and gzip-compressed, each with its own tag when the
// answer has one: the two are different bytes, and caches keep them apart by encoding.
WatchServer::Encoded encoded(const QByteArray &type, const QByteArray &body, const QByteArray &tag,
                             HttpHeaders extra = {})
{
    extra.emplaceBack("Vary", "Accept-Encoding");
    HttpHeaders packed = extra;
    packed.emplaceBack("Content-Encoding", "gzip");
    if (!tag.isEmpty()) {
        extra.emplaceBack("ETag", entityTag(tag, false));
        packed.emplaceBack("ETag", entityTag(tag, true));
    }
    const QByteArray compressed = gzip(body);
    return {httpResponse("200 OK", type, body, extra),
            compressed.isEmpty() ? httpResponse("200 OK", type, body, extra)
                                 : httpResponse("200 OK", type, compressed, packed)};
}

} // namespace

void preferLeanEventDispatcher()
{
    if (qEnvironmentVariableIsEmpty("QT_NO_GLIB"))
        qputenv("QT_NO_GLIB", "1");
}

WatchServer::WatchServer(LanternicStore &store, QString relayName, QObject *parent)
    : QObject(parent), m_store(store), m_relayName(std::move(relayName)),
      m_front(new HttpFront([this](const HttpRequest &request) { return answer(request); }, this)),
      m_republish(new QTimer(this)),
      m_monotonic([] { return QDeadlineTimer::current().deadline(); })
{
    connect(&store, &LanternicStore::passFinished, this, &WatchServer::passFinished);
    // Results arrive one by one during a pass: they are served as they come, a few at a time.
    m_republish->setSingleShot(true);
    m_republish->setInterval(100);
    connect(m_republish, &QTimer::timeout, this, &WatchServer::publish);
    connect(&store, &LanternicStore::resultsChanged, m_republish, [this] {
        if (!m_republish->isActive())
            m_republish->start();
    });
    // Made once before any pass too, from the rows as they are ("Checking…" until a source's
    // first result): a request never costs an answer of its own.
    publishDocuments();
    publishChangeFeed();
    m_metrics = encoded(metricsType, prometheusMetrics(m_store, m_statistics), {});
}

void WatchServer::setMonotonicClock(std::function<qint64()> clock)
{
    m_monotonic = std::move(clock);
}

quint16 WatchServer::listen(const QHostAddress &address, quint16 port)
{
    return m_front->listen(address, port);
}

void WatchServer::passFinished()
{
    ++m_statistics.passes;
    m_statistics.lastPass = m_store.lastChecked();
    m_lastPassAt = m_monotonic();
    m_statistics.lastDurationSeconds = double(m_store.lastPassDuration().count()) / 1e6;
    m_republish->stop();
    recordChanges();
    publish();
}

void WatchServer::recordChanges()
{
    // Offline, nothing is watched; what is seen then is not compared with later passes.
    if (m_store.isOffline())
        return;
    const QDateTime now = m_store.now();
    if (m_passes.follow(ChangeNews::snapshot(m_store.results(), m_store.silence(), now)) !=
        ChangeNews::Follower::Step::compared)
        return;
    if (const auto news = ChangeNews::between(m_passes.previous(), m_passes.current())) {
        m_changes = ChangeFeed::entries(*news, now) + m_changes;
        m_changes.resize(std::min(m_changes.size(), maximumChanges));
        publishChangeFeed();
    }
}

void WatchServer::publishChangeFeed()
{
    const QString feedId = m_store.relayIdentity().isEmpty()
                               ? u"urn:lanternic:watcher"_s
                               : u"urn:uuid:"_s + m_store.relayIdentity();
    const QByteArray atom = ChangeFeed::atom(
        m_changes, m_relayName, feedId, m_changes.isEmpty() ? m_store.now() : m_changes.first().at);
    const QByteArray tag =
        QCryptographicHash::hash(atom, QCryptographicHash::Sha1).toHex().left(20);
    m_changeFeed = {encoded("application/atom+xml", atom, tag, {}), tag};
}

void WatchServer::setForwardCounts(const ForwardCounts &counts)
{
    m_statistics.forwarding = counts;
    publishMetrics();
}

void WatchServer::publish()
{
    publishDocuments();
    publishMetrics();
}

void WatchServer::publishMetrics()
{
    // The exposition is over ten times the feed: written, then compressed, on the next two turns
    // of the loop, so that the answers in flight wait for neither step in one piece. Until then
    // /metrics answers as it did before.
    QTimer::singleShot(0, this, [this] {
        const QByteArray text = prometheusMetrics(m_store, m_statistics);
        QTimer::singleShot(0, this, [this, text] { m_metrics = encoded(metricsType, text, {}); });
    });
}

void WatchServer::publishDocuments()
{
    const auto made = [this](const QByteArray &body) {
        const QByteArray tag =
            QCryptographicHash::hash(body, QCryptographicHash::Sha1).toHex().left(20);
        return Document{
            encoded("application/json", body, tag, {{"Last-Modified", httpDate(m_store.now())}}),
            tag};
    };
    m_relay = made(relayDocument(m_store, m_relayName, std::nullopt));
    m_summary = made(statuspageSummary(m_store, m_relayName, std::nullopt));
}

HttpResponse WatchServer::document(const Document &published, const HttpRequest &request,
                                   bool gzipped) const
{
    if (request.ifNoneMatch.contains(published.tag)) {
        // Either encoding's tag names the same content.
        return httpResponse(
            "304 Not Modified", {}, {},
            {{"Vary", "Accept-Encoding"}, {"ETag", entityTag(published.tag, gzipped)}});
    }
    return gzipped ? published.answer.gzip : published.answer.identity;
}

QByteArray WatchServer::answer(const HttpRequest &request) const
{
    const HttpResponse whole = route(request);
    return request.method == "HEAD" ? whole.bytes.first(whole.headSize) : whole.bytes;
}

// The loop has not finished a pass for three intervals: it has stopped, or its passes hang.
bool WatchServer::isStale() const
{
    return m_lastPassAt && m_monotonic() - *m_lastPassAt > 3 * m_store.pollInterval().count();
}

HttpResponse WatchServer::route(const HttpRequest &request) const
{
    const bool gzipped = acceptsGzip(request.acceptEncoding);
    const auto pick = [gzipped](const Encoded &answer) {
        return gzipped ? answer.gzip : answer.identity;
    };
    const bool ready = m_statistics.passes > 0;
    if (request.path == "/") {
        return httpResponse("200 OK", plainText,
                            "Lanternic watcher\n"
                            "/lanternic.json  the latest pass as a lanternic.v1 relay feed\n"
                            "/api/v2/summary.json  the same as a Statuspage summary\n"
                            "/feed.atom       the last changes between passes, as an Atom feed\n"
                            "/metrics         the latest pass for Prometheus\n"
                            "/healthz         200 while passes keep coming, 503 otherwise\n");
    }
    if (request.path == "/healthz") {
        if (!ready)
            return httpResponse("503 Service Unavailable", plainText, "no pass has finished yet\n");
        if (isStale())
            return httpResponse("503 Service Unavailable", plainText,
                                "no pass has finished for three intervals\n");
        return httpResponse("200 OK", plainText, "ok\n");
    }
    if (request.path == "/metrics")
        return pick(m_metrics);
    if (request.path == "/lanternic.json")
        return document(m_relay, request, gzipped);
    if (request.path == "/api/v2/summary.json")
        return document(m_summary, request, gzipped);
    if (request.path == "/feed.atom")
        return document(m_changeFeed, request, gzipped);
    return httpResponse("404 Not Found", plainText, "not found\n");
}

} // namespace lanternic
