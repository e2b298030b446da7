#include "sources/readers/platforms.h"

#include "model/urls.h"
#include "sources/readers/feeddocument.h"
#include "sources/readers/incidentio.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/relayfeed.h"
#include "sources/readers/statuspage.h"
#include "sources/readers/updog.h"

namespace lanternic {

using namespace Qt::StringLiterals;

// The smaller platforms' readers, one file each.
namespace PlatformReaders {
std::optional<SourceResult> instatus(const JSONSource &, const JsonDocument &);
std::optional<SourceResult> betterStack(const JSONSource &, const JsonDocument &);
std::optional<SourceResult> statusIo(const JSONSource &, const JsonDocument &);
std::optional<SourceResult> cachet(const JSONSource &, const JsonDocument &);
std::optional<SourceResult> gatus(const JSONSource &, const JsonDocument &);
std::optional<SourceResult> google(const JSONSource &, const JsonDocument &);
std::optional<SourceResult> slack(const JSONSource &, const JsonDocument &);
std::optional<SourceResult> openStatus(const JSONSource &, const JsonDocument &);
} // namespace PlatformReaders

// The feeds' readers: the two clouds', then any status feed's.
namespace FeedReaders {
std::optional<SourceResult> aws(const JSONSource &, const FeedDocument &, const QDateTime &);
std::optional<SourceResult> azure(const JSONSource &, const FeedDocument &, const QDateTime &);
std::optional<SourceResult> statusFeed(const JSONSource &, const FeedDocument &, const QDateTime &);
} // namespace FeedReaders

namespace {

template<const char *path>
std::optional<QUrl> document(const Site &site, const std::optional<QString> &subpage)
{
    // Most sources name no subpage: their path is made once, not for each.
    static const QString alone = QString::fromLatin1(path);
    if (subpage)
        return Platforms::below(site, u'/' + *subpage + alone);
    // Resolved against the site, a path parsed once is not parsed again for every source;
    // resolving drops the query and the fragment, as below() does.
    static const QUrl relative(alone, QUrl::StrictMode);
    QUrl url = site.url.resolved(relative);
    if (url.scheme() != "https"_L1 || !url.userInfo().isEmpty())
        return Platforms::below(site, alone);
    if (!url.isValid() || url.host().isEmpty())
        return std::nullopt;
    return url;
}

constexpr char summaryJson[] = "/api/v2/summary.json";
constexpr char instatusSummary[] = "/summary.json";
constexpr char betterStackIndex[] = "/index.json";
constexpr char cachetComponents[] = "/api/v1/components";
constexpr char gatusStatuses[] = "/api/v1/endpoints/statuses";
constexpr char historyAtom[] = "/history.atom";
constexpr char feedPath[] = "/feed";

bool isSuccess(int httpStatus)
{
    return httpStatus >= 200 && httpStatus < 300;
}

bool isStatuspageSummary(int httpStatus, const QByteArray &body)
{
    return isSuccess(httpStatus) && StatuspageSource::decode(parseJson(body)).has_value();
}

// A widget-shaped body counts only with a 200: an error page may be shaped like one.
bool isIncidentWidget(int httpStatus, const QByteArray &body)
{
    return httpStatus == 200 && IncidentIOSource::looksLikeIncidentWidget(parseJson(body));
}

using namespace PlatformReaders;
using namespace FeedReaders;

// Detection order: our own feed, incident.io, Updog and Statuspage, then the smaller platforms
// (whose shape tests are narrower than Statuspage's is lenient), then the feeds: AWS's and
// Azure's before the rule for any status feed, which takes every feed.
const Platform table[] = {
    {"lanternic.v1"_L1, &RelayFeedSource::parse},
    {.displayName = "incident.io"_L1,
     .read = &IncidentIOSource::parse,
     .kind = SourceKind::incidentio,
     .storedName = "incidentio"_L1,
     .catalogName = "incidentio"_L1,
     .document = &IncidentIOSource::widgetURL,
     .probe = Probe::alone,
     .recognizes = &isIncidentWidget},
    {"Updog"_L1, &UpdogSource::parse},
    {.displayName = "Statuspage"_L1,
     .read = &StatuspageSource::parse,
     .kind = SourceKind::atlassian,
     .storedName = "atlassian"_L1,
     .catalogName = "statuspage"_L1,
     .document = &document<summaryJson>,
     .probe = Probe::alone,
     .recognizes = &isStatuspageSummary},
    {.displayName = "Instatus"_L1,
     .read = &instatus,
     .kind = SourceKind::instatus,
     .storedName = "instatus"_L1,
     .catalogName = "instatus"_L1,
     .document = &document<instatusSummary>,
     .probe = Probe::together},
    {.displayName = "Better Stack"_L1,
     .read = &betterStack,
     .kind = SourceKind::betterstack,
     .storedName = "betterstack"_L1,
     .catalogName = "betterstack"_L1,
     .document = &document<betterStackIndex>,
     .probe = Probe::together},
    {"status.io"_L1, &statusIo},
    {.displayName = "Cachet"_L1,
     .read = &cachet,
     .kind = SourceKind::cachet,
     .storedName = "cachet"_L1,
     .catalogName = "cachet"_L1,
     .document = &document<cachetComponents>,
     .probe = Probe::together},
    {.displayName = "Gatus"_L1,
     .read = &gatus,
     .kind = SourceKind::gatus,
     .storedName = "gatus"_L1,
     .catalogName = "gatus"_L1,
     .document = &document<gatusStatuses>,
     .probe = Probe::together},
    {"Google"_L1, &google},
    {"Slack"_L1, &slack},
    {"OpenStatus"_L1, &openStatus},
    {.displayName = "AWS Health Dashboard"_L1, .readFeed = &aws},
    {.displayName = "Azure status"_L1, .readFeed = &azure},
    {.displayName = "feed"_L1,
     .readFeed = &statusFeed,
     .kind = SourceKind::atomFeed,
     .storedName = "atom"_L1,
     .document = &document<historyAtom>,
     .probe = Probe::last},
    {.displayName = "feed"_L1,
     .readFeed = &statusFeed,
     .kind = SourceKind::feed,
     .storedName = "feed"_L1,
     .document = &document<feedPath>,
     .probe = Probe::last},
};

} // namespace

namespace Platforms {

std::span<const Platform> all()
{
    return table;
}

std::optional<QUrl> below(const Site &site, const QString &path, const QString &query)
{
    QUrl url = site.url;
    // Only what differs is set: each setter checks its part again.
    if (url.scheme() != "https"_L1)
        url.setScheme(u"https"_s);
    if (!url.userInfo().isEmpty())
        url.setUserInfo(QString());
    if (url.hasFragment())
        url.setFragment(QString());
    if (url.hasQuery() || !query.isEmpty())
        url.setQuery(query.isEmpty() ? QString() : query, QUrl::StrictMode);
    url.setPath(path, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        return std::nullopt;
    return url;
}

const Platform &of(SourceKind kind)
{
    for (const Platform &platform : table) {
        if (platform.kind == kind)
            return platform;
    }
    Q_UNREACHABLE();
}

std::optional<SourceKind> kindFromStoredName(QStringView name)
{
    for (const Platform &platform : table) {
        if (platform.kind && name == platform.storedName)
            return platform.kind;
    }
    return std::nullopt;
}

std::optional<SourceKind> kindFromCatalogName(QStringView name)
{
    for (const Platform &platform : table) {
        if (platform.kind && name == platform.catalogName)
            return platform.kind;
    }
    return std::nullopt;
}

bool recognizes(const Platform &platform, int httpStatus, const QByteArray &body)
{
    if (platform.recognizes)
        return platform.recognizes(httpStatus, body);
    if (!isSuccess(httpStatus))
        return false;
    if (platform.read)
        return platform.read(JSONSource(), parseJson(body)).has_value();
    const std::optional<FeedDocument> feed = FeedDocument::parse(body);
    return feed && platform.readFeed(JSONSource(), *feed, QDateTime::currentDateTimeUtc());
}

} // namespace Platforms

} // namespace lanternic
