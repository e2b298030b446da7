#pragma once

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QNetworkProxy>
#include <QObject>
#include <QString>
#include <QUrl>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace lanternic::network {

// Bodies beyond this (after decompression) are a failed transfer: no status document comes
// near it.
inline constexpr qint64 maximumBodySize = 16 * 1024 * 1024;
inline constexpr int maximumRedirects = 10;

QByteArray userAgent();

// How long the parts of a transfer took, as libcurl measured them (the last hop of a redirect
// chain; total includes the whole chain).
struct Timing {
    std::chrono::microseconds nameLookup{0};
    std::chrono::microseconds connect{0};
    std::chrono::microseconds tlsHandshake{0};
    std::chrono::microseconds firstByte{0};
    std::chrono::microseconds total{0};
    int redirects = 0;
};

struct Response {
    std::optional<QString> transferFailure; // set when nothing usable arrived
    std::optional<int> httpStatus;          // absent when no HTTP answer came
    QByteArray body;
    Timing timing;
};

// The process's one HTTP client: a libcurl multi handle driven by the Qt event loop of the
// thread that made it, with many transfers in flight at once and connections kept for reuse.
// Every fetch follows the same rules: the User-Agent, limits on connecting, on the first byte
// of the answer, on inactivity and on the whole transfer, redirects only to http and https and
// never from https to http, TLS verified, compressed bodies accepted, the body cap, and the
// system's proxy per URL.
class Session : public QObject {
    Q_OBJECT

public:
    struct Options {
        std::chrono::milliseconds connectTimeout = std::chrono::seconds(10);
        // From the start of each hop to the first byte of its answer.
        std::chrono::milliseconds firstByteTimeout = std::chrono::seconds(30);
        std::chrono::milliseconds inactivityTimeout = std::chrono::seconds(60);
        std::chrono::milliseconds transferLimit = std::chrono::seconds(120);
        // The whole of a probe, a question that only decides how to ask later.
        std::chrono::milliseconds probeLimit = std::chrono::seconds(10);
        // Requests to these hosts (any port, any scheme) go to 127.0.0.1 at the given port over
        // plain HTTP, keeping their host name: how tests and benchmarks reach loopback servers.
        QHash<QString, quint16> loopbackHosts;
        // Trusted instead of the system's CA store: a test's own certificate.
        QString caFile;
    };

    explicit Session(QObject *parent = nullptr);
    explicit Session(Options options, QObject *parent = nullptr);
    ~Session() override;

    // A plain GET. done runs once, on this thread, from the event loop, unless context is
    // destroyed first: that aborts the transfer and done never runs. limit replaces the limit
    // on the whole transfer (a probe's share of its own).
    void get(const QUrl &url, QObject *context, std::function<void(Response)> done,
             std::optional<std::chrono::milliseconds> limit = std::nullopt);

    // A POST of body with the given headers (name and value, as sent), under the same rules as
    // a GET, except that a redirect is its answer and not followed: a message is delivered to
    // the address it was given, or not at all.
    using Headers = QList<std::pair<QByteArray, QByteArray>>;
    void post(const QUrl &url, const QByteArray &body, const Headers &headers, QObject *context,
              std::function<void(Response)> done,
              std::optional<std::chrono::milliseconds> limit = std::nullopt);

    const Options &options() const;

    qsizetype transfersInFlight() const;

    struct Private; // opaque; public only so that the transfers it runs can name it

private:
    std::unique_ptr<Private> d;
};

// Where an address leads, for the rules on what a check may connect to.
enum class AddressScope { publicUse, privateUse, loopback, linkLocal };
AddressScope scopeOf(const QHostAddress &address);

// Why a connection to an address of scope to is refused after a redirect from an address of
// scope from (nothing on the first hop), or nothing when it is allowed. Link-local addresses
// (where clouds answer with their machines' credentials) are never reached, and a public page
// cannot send a check into the user's own network; a source configured on a private or
// loopback address works.
std::optional<QString> connectionRefusal(AddressScope to, std::optional<AddressScope> from);

// The proxy libcurl should use for url, as Qt's system proxy lookup reports it ("" for none).
QByteArray curlProxyFor(const QNetworkProxy &proxy);

} // namespace lanternic::network
