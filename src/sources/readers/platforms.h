#pragma once

#include "model/jsonsource.h"
#include "model/sourceresult.h"
#include "sources/readers/jsondecoder.h"

#include <QLatin1StringView>
#include <QList>
#include <QUrl>
#include <optional>
#include <span>

namespace lanternic {

// The page kind of a bare host: which platform's document it publishes its status in.
enum class SourceKind {
    atlassian,
    incidentio,
    instatus,
    betterstack,
    cachet,
    gatus,
    atomFeed,
    feed
};

struct FeedDocument;

// Every reader has this shape: a pure function giving nothing when the document is not in its
// platform's format, which no other platform's document passes.
using Reader = std::optional<SourceResult> (*)(const JSONSource &, const JsonDocument &);
// The readers of RSS and Atom feeds, tried after every JSON reader has declined a body; now
// tells which incidents are too old to be open.
using FeedReader = std::optional<SourceResult> (*)(const JSONSource &, const FeedDocument &,
                                                   const QDateTime &now);

// How a bare host is asked whether it is on the platform.
enum class Probe {
    never,    // not found on a page's own host
    alone,    // asked on its own, in table order, before the others
    together, // asked at once with the others of its kind, the first in table order wins
    last,     // asked on its own, in table order, when all the others declined
};

// A page's own host as written (its case kept, with a port when one was written), and the
// same parsed once as an address, from which its platforms' documents are made.
struct Site {
    QString host;
    QUrl url;
};

// One status platform: everything the rest of the system needs to know of it.
struct Platform {
    QLatin1StringView displayName; // "Statuspage", as source lines are described
    Reader read = nullptr;         // a JSON platform's; or
    FeedReader readFeed = nullptr; // a feed's
    // For platforms found on a page's own host: the kind, its name in the stored kind cache,
    // the catalogue's word for it, the document below the host, and how it is probed.
    std::optional<SourceKind> kind = std::nullopt;
    QLatin1StringView storedName = {};
    QLatin1StringView catalogName = {};
    // The document's URL for a site and optional sub-page; nothing when they make no URL.
    std::optional<QUrl> (*document)(const Site &site,
                                    const std::optional<QString> &subpage) = nullptr;
    Probe probe = Probe::never;
    // Whether a probe's answer (HTTP status and body) is the platform's; when not set, a 2xx
    // answer that the reader accepts.
    bool (*recognizes)(int httpStatus, const QByteArray &body) = nullptr;
};

namespace Platforms {

// In detection order: the first reader that accepts a document wins.
std::span<const Platform> all();

// The row of a kind; every kind has one.
const Platform &of(SourceKind kind);

std::optional<SourceKind> kindFromStoredName(QStringView name);
std::optional<SourceKind> kindFromCatalogName(QStringView name);

// The address at path (and query, when given) on site, over HTTPS; nothing when they make no
// URL. The site's host is not parsed again.
std::optional<QUrl> below(const Site &site, const QString &path, const QString &query = {});

// Whether a probe's answer is the platform's.
bool recognizes(const Platform &platform, int httpStatus, const QByteArray &body);

} // namespace Platforms

} // namespace lanternic
