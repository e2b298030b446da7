#include "sources/network.h"

#include "platform/socketwatcher.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QNetworkProxyFactory>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <arpa/inet.h>
#include <curl/curl.h>
#include <deque>
#include <sys/socket.h>

namespace lanternic::network {

using namespace Qt::StringLiterals;
using std::chrono::microseconds;

namespace {

class Transfer;

// Names resolved for a few hundred transfers at most, and only while they run. libcurl keeps
// resolved names in a hash of seven buckets, which it also walks whole to prune as each
// transfer ends: with thousands of hosts in one cache both cost thousands of steps a transfer.
// So entries never expire (no pruning walk), and each cache serves a bounded number of
// transfers, and goes with the last of them.
struct NameCache {
    static constexpr int transfers = 256;

    NameCache() : share(curl_share_init())
    {
        curl_share_setopt(share, CURLSHOPT_SHARE, CURL_LOCK_DATA_DNS);
    }
    ~NameCache() { curl_share_cleanup(share); }
    NameCache(const NameCache &) = delete;
    NameCache &operator=(const NameCache &) = delete;

    CURLSH *share;
    int handedOut = 0;
};

// A limit as the failure text says it: whole seconds, or a fraction where tests set less.
QString seconds(std::chrono::milliseconds limit)
{
    return QString::number(double(limit.count()) / 1000.0);
}

microseconds timeInfo(CURL *easy, CURLINFO info)
{
    curl_off_t value = 0;
    curl_easy_getinfo(easy, info, &value);
    return microseconds(value);
}

} // namespace

struct Session::Private {
    Private(Session *session, Options options);
    ~Private();

    void start(Transfer *transfer, const QUrl &url);
    void awaitFirstByte(Transfer *transfer);
    void checkFirstBytes();
    void timeout();
    void processFinished();
    void complete(Transfer *transfer, CURLcode code);
    void detach(Transfer *transfer);
    // hostAddress: the URL's host read as an address, null for a name.
    QByteArray proxyFor(const QUrl &url, const QHostAddress &hostAddress);
    std::shared_ptr<NameCache> nameCache();
    CURL *takeHandle();
    void giveBack(CURL *easy);
    void dropSpareHandles();

    static int onSocket(CURL *, curl_socket_t socket, int what, void *self, void *);
    static int onTimer(CURLM *, long timeoutMs, void *self);

    Session *q;
    Options options;
    CURLM *multi = nullptr;
    // The cache of resolved names that new transfers share; see NameCache.
    std::shared_ptr<NameCache> names;
    QTimer timer;
    QHash<CURL *, Transfer *> transfers;
    SocketWatcher sockets;
    // Proxy lookups ask the desktop's settings; one per host is enough while transfers run.
    QHash<QString, QByteArray> proxies;
    // The hops waiting for the first byte of an answer, in the order they started. Every wait
    // is as long, so they end in that order too: one timer for the first of them, not one
    // per transfer (Qt keeps its timers in a sorted list, so thousands cost thousands each).
    struct FirstByteWait {
        qint64 deadline; // on QDeadlineTimer's clock, in milliseconds
        QPointer<Transfer> transfer;
        int hop;
    };
    std::deque<FirstByteWait> firstByteWaits;
    QTimer firstByteTimer;
    // Easy handles of finished GETs, with the session's options set, for the next transfers:
    // making a handle and setting them costs more than the rest of a transfer's setup. A few
    // are kept, and none once no transfer runs.
    std::vector<CURL *> spareHandles;
};

namespace {

// An address as libcurl writes it, read without Qt's general parser, which costs more than
// the rest of a connection's checks; forms it does not know (a zone) are left to that parser.
QHostAddress addressOf(const char *text)
{
    in_addr v4;
    if (inet_pton(AF_INET, text, &v4) == 1)
        return QHostAddress(quint32(ntohl(v4.s_addr)));
    in6_addr v6;
    if (inet_pton(AF_INET6, text, &v6) == 1)
        return QHostAddress(v6.s6_addr);
    return QHostAddress(QString::fromLatin1(text));
}

// One GET in flight. A child of the caller's context, so destroying the context aborts it.
class Transfer : public QObject {
public:
    Transfer(Session::Private *owner, QObject *context, std::function<void(Response)> done)
        : QObject(context), owner(owner), easy(owner->takeHandle()), done(std::move(done))
    {
        error[0] = '\0';
    }

    // The easy handle goes (or lets go of it) before its name cache, which cannot go while a
    // handle uses it.
    ~Transfer() override
    {
        Session::Private *const session = owner;
        if (session)
            session->detach(this);
        // A POST's handle holds its body and headers: only a finished GET's serves again.
        if (session && finished && !headers)
            session->giveBack(easy);
        else
            curl_easy_cleanup(easy);
        curl_slist_free_all(connectTo);
        curl_slist_free_all(headers);
    }

    static size_t onHeader(char *, size_t, size_t size, void *self)
    {
        static_cast<Transfer *>(self)->answered = true;
        return size;
    }

    static size_t onData(char *data, size_t, size_t size, void *self)
    {
        auto *transfer = static_cast<Transfer *>(self);
        if (transfer->body.isEmpty()) {
            // One allocation for the whole body when its length is known.
            curl_off_t length = -1;
            curl_easy_getinfo(transfer->easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
            if (length > 0 && length <= maximumBodySize)
                transfer->body.reserve(qsizetype(length));
        }
        if (transfer->body.size() + qint64(size) > maximumBodySize) {
            transfer->tooLarge = true;
            return 0; // aborts the transfer
        }
        transfer->body.append(data, qsizetype(size));
        return size;
    }

    // Checked as libcurl connects, with the address the name resolved to.
    static curl_socket_t onOpenSocket(void *self, curlsocktype, curl_sockaddr *address)
    {
        auto *transfer = static_cast<Transfer *>(self);
        if (!transfer->viaProxy) {
            QHostAddress host;
            host.setAddress(&address->addr);
            transfer->refusal = connectionRefusal(scopeOf(host), transfer->previousScope);
            if (transfer->refusal)
                return CURL_SOCKET_BAD;
        }
        return ::socket(address->family, address->socktype, address->protocol);
    }

    // Checked again once the connection is there, new or kept from an earlier transfer (which
    // opened no socket for this hop), and before the request goes out on it.
    static int onConnected(void *self, char *address, char *, int, int)
    {
        auto *transfer = static_cast<Transfer *>(self);
        const QHostAddress peer = addressOf(address);
        if (transfer->viaProxy || peer.isNull())
            return CURL_PREREQFUNC_OK;
        transfer->refusal = connectionRefusal(scopeOf(peer), transfer->previousScope);
        return transfer->refusal ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
    }

    Session::Private *owner;
    std::shared_ptr<NameCache> names;
    CURL *easy;
    std::function<void(Response)> done;
    QUrl url; // as asked for, before any loopback rewriting
    curl_slist *connectTo = nullptr;
    curl_slist *headers = nullptr; // of a POST
    bool followsRedirects = true;
    QByteArray body;
    bool tooLarge = false;
    bool answered = false;   // some byte of this hop's answer has come
    bool unanswered = false; // ended for want of a first byte
    bool viaProxy = false;
    bool finished = false; // answered, failed or refused, rather than aborted
    std::chrono::milliseconds limit{0};
    std::optional<AddressScope> previousScope; // of the hop that redirected here
    std::optional<QString> refusal;
    Timing timing;
    QElapsedTimer started;
    char error[CURL_ERROR_SIZE];
};

} // namespace

QByteArray userAgent()
{
    return QByteArrayLiteral("Lanternic/" LANTERNIC_VERSION);
}

AddressScope scopeOf(const QHostAddress &address)
{
    bool mapped = false;
    quint32 v4 = address.toIPv4Address(&mapped); // also an IPv4 address written as IPv6
    if (mapped) {
        const auto in = [v4](quint32 network, int bits) {
            return (v4 >> (32 - bits)) == (network >> (32 - bits));
        };
        if (in(0xA9FE0000, 16)) // 169.254.0.0/16
            return AddressScope::linkLocal;
        if (in(0x7F000000, 8) || in(0, 8)) // 127.0.0.0/8, and 0.0.0.0/8 which reaches this host
            return AddressScope::loopback;
        if (in(0x0A000000, 8) || in(0xAC100000, 12) || in(0xC0A80000, 16) ||
            in(0x64400000, 10)) // 10/8, 172.16/12, 192.168/16, the carriers' 100.64/10
            return AddressScope::privateUse;
        return AddressScope::publicUse;
    }
    const Q_IPV6ADDR v6 = address.toIPv6Address();
    if (address.isLoopback() || address == QHostAddress(QHostAddress::AnyIPv6))
        return AddressScope::loopback;
    if (v6[0] == 0xfe && (v6[1] & 0xc0) == 0x80) // fe80::/10
        return AddressScope::linkLocal;
    if ((v6[0] & 0xfe) == 0xfc) // fc00::/7
        return AddressScope::privateUse;
    return AddressScope::publicUse;
}

std::optional<QString> connectionRefusal(AddressScope to, std::optional<AddressScope> from)
{
    if (to == AddressScope::linkLocal)
        return QCoreApplication::translate("Network", "Link-local address refused");
    if (from == AddressScope::publicUse &&
        (to == AddressScope::loopback || to == AddressScope::privateUse))
        return QCoreApplication::translate("Network",
                                           "Redirect from a public to a private address refused");
    return std::nullopt;
}

QByteArray curlProxyFor(const QNetworkProxy &proxy)
{
    QByteArray scheme;
    switch (proxy.type()) {
    case QNetworkProxy::HttpProxy:
    case QNetworkProxy::HttpCachingProxy:
        scheme = "http";
        break;
    case QNetworkProxy::Socks5Proxy:
        scheme = "socks5h"; // the proxy resolves names, as the desktop's settings mean it to
        break;
    default:
        return QByteArray(); // no proxy: libcurl must not look at the environment itself
    }
    QUrl url;
    url.setScheme(QString::fromLatin1(scheme));
    url.setHost(proxy.hostName());
    url.setPort(proxy.port());
    url.setUserName(proxy.user());
    url.setPassword(proxy.password());
    return url.toEncoded();
}

Session::Private::Private(Session *session, Options options)
    : q(session), options(options),
      sockets(
          session,
          [this](qintptr socket, bool readable, bool writable) {
              int running = 0;
              curl_multi_socket_action(
                  multi, curl_socket_t(socket),
                  (readable ? CURL_CSELECT_IN : 0) | (writable ? CURL_CSELECT_OUT : 0), &running);
          },
          [this] { processFinished(); })
{
    static const bool initialised = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    Q_UNUSED(initialised);
    multi = curl_multi_init();
    curl_multi_setopt(multi, CURLMOPT_SOCKETFUNCTION, &Private::onSocket);
    curl_multi_setopt(multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(multi, CURLMOPT_TIMERFUNCTION, &Private::onTimer);
    curl_multi_setopt(multi, CURLMOPT_TIMERDATA, this);
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, q, [this] { timeout(); });
    firstByteTimer.setSingleShot(true);
    firstByteTimer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&firstByteTimer, &QTimer::timeout, q, [this] { checkFirstBytes(); });
}

Session::Private::~Private()
{
    // Aborted without answers: their callers are going away with the session.
    for (Transfer *transfer : transfers.values())
        delete transfer;
    dropSpareHandles();
    curl_multi_cleanup(multi);
}

int Session::Private::onSocket(CURL *, curl_socket_t socket, int what, void *self, void *)
{
    // CURL_POLL_REMOVE has neither bit: the socket is watched for nothing.
    static_cast<Private *>(self)->sockets.watch(qintptr(socket), what & CURL_POLL_IN,
                                                what & CURL_POLL_OUT);
    return 0;
}

int Session::Private::onTimer(CURLM *, long timeoutMs, void *self)
{
    auto *d = static_cast<Private *>(self);
    if (timeoutMs < 0)
        d->timer.stop();
    else
        d->timer.start(int(std::min<long>(timeoutMs, 24 * 3600 * 1000)));
    return 0;
}

void Session::Private::timeout()
{
    int running = 0;
    curl_multi_socket_action(multi, CURL_SOCKET_TIMEOUT, 0, &running);
    processFinished();
}

void Session::Private::processFinished()
{
    // Collected first: a caller's callback may abort other transfers or start new ones.
    QList<std::pair<CURL *, CURLcode>> finished;
    int left = 0;
    while (CURLMsg *message = curl_multi_info_read(multi, &left)) {
        if (message->msg == CURLMSG_DONE)
            finished.append({message->easy_handle, message->data.result});
    }
    const QPointer<Session> alive(q);
    for (const auto &[easy, code] : finished) {
        if (!alive)
            return;
        if (Transfer *transfer = transfers.value(easy))
            complete(transfer, code);
    }
}

void Session::Private::start(Transfer *transfer, const QUrl &url)
{
    CURL *easy = transfer->easy;
    transfer->url = url;
    transfer->body.clear();
    curl_slist_free_all(transfer->connectTo);
    transfer->connectTo = nullptr;

    QUrl target = url;
    const QString host = url.host();
    // Read once: the proxy and the refusal of forbidden addresses both ask.
    const QHostAddress literal(host);
    if (auto loopback = options.loopbackHosts.constFind(host);
        loopback != options.loopbackHosts.constEnd()) {
        target.setScheme(u"http"_s);
        target.setPort(*loopback);
        transfer->connectTo = curl_slist_append(
            nullptr, QByteArray(host.toUtf8() + ':' + QByteArray::number(*loopback) +
                                ":127.0.0.1:" + QByteArray::number(*loopback))
                         .constData());
    }
    curl_easy_setopt(easy, CURLOPT_URL, target.toEncoded().constData());
    curl_easy_setopt(easy, CURLOPT_CONNECT_TO, transfer->connectTo);
    const QByteArray proxy = proxyFor(target, literal);
    curl_easy_setopt(easy, CURLOPT_PROXY, proxy.constData());
    // Through a proxy only the address written in the URL is known here.
    transfer->viaProxy = !proxy.isEmpty();
    transfer->refusal.reset();
    if (!literal.isNull())
        transfer->refusal = connectionRefusal(scopeOf(literal), transfer->previousScope);
    if (transfer->refusal) {
        transfers.insert(easy, transfer);
        QTimer::singleShot(0, q, [this, easy] {
            if (Transfer *refused = transfers.value(easy))
                complete(refused, CURLE_COULDNT_CONNECT);
        });
        return;
    }
    // The limit covers the whole redirect chain.
    const qint64 left = transfer->limit.count() - transfer->started.elapsed();
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, long(std::max<qint64>(left, 1)));
    transfers.insert(easy, transfer);
    curl_multi_add_handle(multi, easy);
    // libcurl has no limit on the wait for an HTTP answer: a server that accepts and then says
    // nothing would hold the check for the whole transfer limit.
    transfer->answered = false;
    awaitFirstByte(transfer);
}

void Session::Private::awaitFirstByte(Transfer *transfer)
{
    const qint64 deadline = QDeadlineTimer::current().deadline() +
                            std::chrono::milliseconds(options.firstByteTimeout).count();
    firstByteWaits.push_back({deadline, transfer, transfer->timing.redirects});
    if (!firstByteTimer.isActive())
        firstByteTimer.start(std::chrono::milliseconds(options.firstByteTimeout));
}

void Session::Private::checkFirstBytes()
{
    const qint64 now = QDeadlineTimer::current().deadline();
    // An answer's callback may end the session itself.
    const QPointer<QObject> alive(q);
    while (!firstByteWaits.empty() && firstByteWaits.front().deadline <= now) {
        const FirstByteWait wait = firstByteWaits.front();
        firstByteWaits.pop_front();
        Transfer *transfer = wait.transfer.data();
        if (!transfer || transfer->answered || wait.hop != transfer->timing.redirects ||
            !transfers.contains(transfer->easy))
            continue;
        transfer->unanswered = true;
        curl_multi_remove_handle(multi, transfer->easy);
        complete(transfer, CURLE_OPERATION_TIMEDOUT);
        if (!alive)
            return;
    }
    if (!firstByteWaits.empty())
        firstByteTimer.start(std::chrono::milliseconds(firstByteWaits.front().deadline - now));
}

void Session::Private::detach(Transfer *transfer)
{
    if (transfers.remove(transfer->easy))
        curl_multi_remove_handle(multi, transfer->easy);
    transfer->owner = nullptr;
    if (transfers.isEmpty()) {
        proxies.clear();
        dropSpareHandles();
        // Every wait still queued is for a transfer that has ended; a pass of thousands leaves
        // as many until the last deadline.
        firstByteWaits = {};
        firstByteTimer.stop();
        transfers.squeeze();
    }
}

CURL *Session::Private::takeHandle()
{
    if (!spareHandles.empty()) {
        CURL *easy = spareHandles.back();
        spareHandles.pop_back();
        return easy;
    }
    CURL *easy = curl_easy_init();
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Transfer::onData);
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &Transfer::onOpenSocket);
    curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &Transfer::onConnected);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &Transfer::onHeader);
    curl_easy_setopt(easy, CURLOPT_USERAGENT, userAgent().constData());
    // Redirects are followed here, so that each hop is checked against our rules.
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, curl_off_t(maximumBodySize));
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_2TLS));
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, long(options.connectTimeout.count()));
    curl_easy_setopt(easy, CURLOPT_DNS_CACHE_TIMEOUT, -1L);
    // Silence for the whole inactivity time-out ends the transfer; a slow drip is ended by the
    // limit on the whole transfer.
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME,
                     long(std::max<qint64>(1, options.inactivityTimeout.count() / 1000)));
    if (!options.caFile.isEmpty())
        curl_easy_setopt(easy, CURLOPT_CAINFO, options.caFile.toLocal8Bit().constData());
    return easy;
}

void Session::Private::giveBack(CURL *easy)
{
    constexpr std::size_t kept = 32;
    if (transfers.isEmpty() || spareHandles.size() >= kept) {
        curl_easy_cleanup(easy);
        return;
    }
    // Nothing of the transfer it served stays reachable from it; the next sets its own.
    curl_easy_setopt(easy, CURLOPT_SHARE, nullptr);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, nullptr);
    curl_easy_setopt(easy, CURLOPT_PRIVATE, nullptr);
    spareHandles.push_back(easy);
}

void Session::Private::dropSpareHandles()
{
    for (CURL *easy : spareHandles)
        curl_easy_cleanup(easy);
    spareHandles.clear();
}

void Session::Private::complete(Transfer *transfer, CURLcode code)
{
    CURL *easy = transfer->easy;
    long status = 0;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
    Timing &timing = transfer->timing;
    timing.nameLookup = timeInfo(easy, CURLINFO_NAMELOOKUP_TIME_T);
    timing.connect = timeInfo(easy, CURLINFO_CONNECT_TIME_T);
    timing.tlsHandshake = timeInfo(easy, CURLINFO_APPCONNECT_TIME_T);
    timing.firstByte = timeInfo(easy, CURLINFO_STARTTRANSFER_TIME_T);
    timing.total += timeInfo(easy, CURLINFO_TOTAL_TIME_T);

    Response response;
    curl_header *location = nullptr;
    if (code == CURLE_OK && transfer->followsRedirects && status >= 300 && status < 400 &&
        curl_easy_header(easy, "Location", 0, CURLH_HEADER, -1, &location) == CURLHE_OK) {
        // Resolved against the address asked for, not the loopback one it may have gone to.
        const QUrl next = transfer->url.resolved(QUrl::fromEncoded(location->value));
        const QString scheme = next.scheme();
        if (scheme != "http"_L1 && scheme != "https"_L1) {
            response.transferFailure = QCoreApplication::translate(
                "Network", "Redirect to another kind of address refused");
        } else if (transfer->url.scheme() == "https"_L1 && scheme == "http"_L1) {
            response.transferFailure =
                QCoreApplication::translate("Network", "Redirect from https to http refused");
        } else if (timing.redirects == maximumRedirects) {
            response.transferFailure = QCoreApplication::translate("Network", "Too many redirects");
        } else {
            ++timing.redirects;
            char *ip = nullptr;
            curl_easy_getinfo(easy, CURLINFO_PRIMARY_IP, &ip);
            const QHostAddress address = addressOf(ip ? ip : "");
            transfer->previousScope =
                address.isNull() ? std::nullopt : std::optional(scopeOf(address));
            curl_multi_remove_handle(multi, easy);
            transfers.remove(easy);
            start(transfer, next);
            return;
        }
    } else if (transfer->refusal) {
        response.transferFailure = *transfer->refusal;
    } else if (transfer->tooLarge || code == CURLE_FILESIZE_EXCEEDED) {
        response.transferFailure =
            QCoreApplication::translate("Network", "The response is larger than 16 MiB");
    } else if (transfer->unanswered) {
        response.transferFailure = QCoreApplication::translate("Network", "No answer within %1 s")
                                       .arg(seconds(options.firstByteTimeout));
    } else if (code == CURLE_OPERATION_TIMEDOUT && timing.connect.count() == 0 &&
               transfer->started.elapsed() < transfer->limit.count()) {
        response.transferFailure =
            QCoreApplication::translate("Network", "No connection within %1 s")
                .arg(seconds(options.connectTimeout));
    } else if (code == CURLE_OPERATION_TIMEDOUT) {
        response.transferFailure = QCoreApplication::translate("Network", "The request timed out");
    } else if (code != CURLE_OK) {
        response.transferFailure = QString::fromUtf8(
            transfer->error[0] != '\0' ? transfer->error : curl_easy_strerror(code));
    } else {
        if (status > 0)
            response.httpStatus = int(status);
        response.body = std::move(transfer->body);
    }
    response.timing = timing;

    auto done = std::move(transfer->done);
    transfer->finished = true;
    delete transfer; // which detaches it
    done(std::move(response));
}

std::shared_ptr<NameCache> Session::Private::nameCache()
{
    // A new one after an idle spell too, so that no name outlives the burst it was resolved in.
    if (!names || names->handedOut == NameCache::transfers || transfers.isEmpty())
        names = std::make_shared<NameCache>();
    ++names->handedOut;
    return names;
}

QByteArray Session::Private::proxyFor(const QUrl &url, const QHostAddress &hostAddress)
{
    // Loopback addresses never go through a proxy, as in browsers.
    if (hostAddress.isLoopback() || url.host() == "localhost"_L1)
        return QByteArray();
    const QString key = url.scheme() + u' ' + url.host() + u':' + QString::number(url.port());
    auto cached = proxies.constFind(key);
    if (cached != proxies.constEnd())
        return *cached;
    const QList<QNetworkProxy> found =
        QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
    return *proxies.insert(key, curlProxyFor(found.value(0)));
}

Session::Session(QObject *parent) : Session(Options(), parent) {}

Session::Session(Options options, QObject *parent)
    : QObject(parent), d(std::make_unique<Private>(this, std::move(options)))
{
}

Session::~Session() = default;

qsizetype Session::transfersInFlight() const
{
    return d->transfers.size();
}

const Session::Options &Session::options() const
{
    return d->options;
}

namespace {

Transfer *prepared(Session::Private *d, QObject *context, std::function<void(Response)> done,
                   std::optional<std::chrono::milliseconds> limit)
{
    auto *transfer = new Transfer(d, context, std::move(done));
    transfer->limit = limit.value_or(d->options.transferLimit);
    // The session's own options are on the handle already; these are this transfer's.
    CURL *easy = transfer->easy;
    curl_easy_setopt(easy, CURLOPT_PRIVATE, transfer);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, transfer->error);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, transfer);
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, transfer);
    curl_easy_setopt(easy, CURLOPT_PREREQDATA, transfer);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, transfer);
    transfer->names = d->nameCache();
    curl_easy_setopt(easy, CURLOPT_SHARE, transfer->names->share);
    transfer->started.start();
    return transfer;
}

} // namespace

void Session::get(const QUrl &url, QObject *context, std::function<void(Response)> done,
                  std::optional<std::chrono::milliseconds> limit)
{
    d->start(prepared(d.get(), context, std::move(done), limit), url);
}

void Session::post(const QUrl &url, const QByteArray &body, const Headers &headers,
                   QObject *context, std::function<void(Response)> done,
                   std::optional<std::chrono::milliseconds> limit)
{
    Transfer *transfer = prepared(d.get(), context, std::move(done), limit);
    transfer->followsRedirects = false;
    CURL *easy = transfer->easy;
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(body.size()));
    curl_easy_setopt(easy, CURLOPT_COPYPOSTFIELDS, body.constData());
    // Sent whole at once: no "Expect: 100-continue" round trip.
    transfer->headers = curl_slist_append(nullptr, "Expect:");
    for (const auto &[name, value] : headers) {
        // A line break would end the header and start another the caller never wrote.
        if (name.contains('\n') || name.contains('\r') || value.contains('\n') ||
            value.contains('\r'))
            continue;
        transfer->headers =
            curl_slist_append(transfer->headers, QByteArray(name + ": " + value).constData());
    }
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, transfer->headers);
    d->start(transfer, url);
}

} // namespace lanternic::network
