#include "sources/readers/platforms.h"

#include "model/urls.h"
#include "sources/readers/incidentio.h"
#include "sources/readers/relayfeed.h"
#include "sources/readers/statuspage.h"
#include "sources/readers/updog.h"

namespace lanternic {

using namespace Qt::StringLiterals;

// The smaller platforms' readers, one file each.
namespace PlatformReaders {
std::optional<SourceResult> instatus(const JSONSource &, const QJsonDocument &);
std::optional<SourceResult> betterStack(const JSONSource &, const QJsonDocument &);
std::optional<SourceResult> statusIo(const JSONSource &, const QJsonDocument &);
std::optional<SourceResult> cachet(const JSONSource &, const QJsonDocument &);
std::optional<SourceResult> gatus(const JSONSource &, const QJsonDocument &);
std::optional<SourceResult> google(const JSONSource &, const QJsonDocument &);
std::optional<SourceResult> slack(const JSONSource &, const QJsonDocument &);
std::optional<SourceResult> openStatus(const JSONSource &, const QJsonDocument &);
} // namespace PlatformReaders

namespace {

std::optional<QUrl> below(const QString &host, const std::optional<QString> &subpage,
                          QLatin1StringView path)
{
    return parseUrl("https://"_L1 + host + (subpage ? u'/' + *subpage : QString()) + path);
}

template<const char *path>
std::optional<QUrl> document(const QString &host, const std::optional<QString> &subpage)
{
    return below(host, subpage, QLatin1StringView(path));
}

constexpr char summaryJson[] = "/api/v2/summary.json";
constexpr char instatusSummary[] = "/summary.json";
constexpr char betterStackIndex[] = "/index.json";
constexpr char cachetComponents[] = "/api/v1/components";
constexpr char gatusStatuses[] = "/api/v1/endpoints/statuses";

bool isSuccess(int httpStatus)
{
    return httpStatus >= 200 && httpStatus < 300;
}

bool isStatuspageSummary(int httpStatus, const QJsonDocument &document)
{
    return isSuccess(httpStatus) && StatuspageSource::decode(document).has_value();
}

// A widget-shaped body counts only with a 200: an error page may be shaped like one.
bool isIncidentWidget(int httpStatus, const QJsonDocument &document)
{
    return httpStatus == 200 && IncidentIOSource::looksLikeIncidentWidget(document);
}

using namespace PlatformReaders;

// Detection order: our own feed, incident.io, Updog and Statuspage, then the smaller platforms
// (whose shape tests are narrower than Statuspage's is lenient).
const Platform table[] = {
    {"lanternic.v1"_L1, &RelayFeedSource::parse},
    {"incident.io"_L1, &IncidentIOSource::parse, SourceKind::incidentio, "incidentio"_L1,
     "incidentio"_L1, &IncidentIOSource::widgetURL, Probe::alone, &isIncidentWidget},
    {"Updog"_L1, &UpdogSource::parse},
    {"Statuspage"_L1, &StatuspageSource::parse, SourceKind::atlassian, "atlassian"_L1,
     "statuspage"_L1, &document<summaryJson>, Probe::alone, &isStatuspageSummary},
    {"Instatus"_L1, &instatus, SourceKind::instatus, "instatus"_L1, "instatus"_L1,
     &document<instatusSummary>, Probe::together},
    {"Better Stack"_L1, &betterStack, SourceKind::betterstack, "betterstack"_L1, "betterstack"_L1,
     &document<betterStackIndex>, Probe::together},
    {"status.io"_L1, &statusIo},
    {"Cachet"_L1, &cachet, SourceKind::cachet, "cachet"_L1, "cachet"_L1,
     &document<cachetComponents>, Probe::together},
    {"Gatus"_L1, &gatus, SourceKind::gatus, "gatus"_L1, "gatus"_L1, &document<gatusStatuses>,
     Probe::together},
    {"Google"_L1, &google},
    {"Slack"_L1, &slack},
    {"OpenStatus"_L1, &openStatus},
};

} // namespace

namespace Platforms {

std::span<const Platform> all()
{
    return table;
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

bool recognizes(const Platform &platform, int httpStatus, const QJsonDocument &document)
{
    return platform.recognizes
               ? platform.recognizes(httpStatus, document)
               : isSuccess(httpStatus) && platform.read(JSONSource(), document).has_value();
}

} // namespace Platforms

} // namespace lanternic
