#pragma once

#include "model/sourceresult.h"

#include <QJsonDocument>
#include <optional>

namespace lanternic {

struct JSONSource;

// Readers for the status platforms beyond the four built-in formats, tried after them in the
// order of `PlatformReaders::all`. Each is a pure reader: nothing when the document does not
// pass its shape test, which no other platform's document passes.
namespace PlatformReaders {

using Reader = std::optional<SourceResult> (*)(const JSONSource &, const QJsonDocument &);

// Instatus: the page's /summary.json.
std::optional<SourceResult> instatus(const JSONSource &source, const QJsonDocument &document);
// Better Stack: the page's /index.json.
std::optional<SourceResult> betterStack(const JSONSource &source, const QJsonDocument &document);
// status.io: api.status.io/1.0/status/PAGE_ID.
std::optional<SourceResult> statusIo(const JSONSource &source, const QJsonDocument &document);
// Cachet 2.x and 3.x: /api/v1/components.
std::optional<SourceResult> cachet(const JSONSource &source, const QJsonDocument &document);
// Gatus: /api/v1/endpoints/statuses.
std::optional<SourceResult> gatus(const JSONSource &source, const QJsonDocument &document);
// Google Cloud and Workspace: incidents.json.
std::optional<SourceResult> google(const JSONSource &source, const QJsonDocument &document);
// Slack: slack-status.com/api/v2.0.0/current.
std::optional<SourceResult> slack(const JSONSource &source, const QJsonDocument &document);
// OpenStatus: api.openstatus.dev/public/status/SLUG.
std::optional<SourceResult> openStatus(const JSONSource &source, const QJsonDocument &document);

inline constexpr Reader all[] = {&instatus, &betterStack, &statusIo, &cachet,
                                 &gatus,    &google,      &slack,    &openStatus};

} // namespace PlatformReaders

} // namespace lanternic
