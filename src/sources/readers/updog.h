#pragma once

#include "model/jsonsource.h"
#include "model/sourceresult.h"
#include "sources/readers/jsondecoder.h"

#include <QString>
#include <optional>

namespace lanternic {

// Reads the Updog cloud-outage feed for one provider, and optionally one of its services.
namespace UpdogSource {

struct Outage {
    std::optional<QString> status; // "ongoing" marks a current outage
    std::optional<QString> impactedRegion;
};

struct Provider {
    std::optional<QString> providerName;
    std::optional<QString> providerService;
    std::optional<QString> displayName;
    std::optional<QList<Outage>> outages;

    bool hasOngoingOutage() const;
    std::optional<QString> ongoingRegion() const;
    QString componentKey() const;
    QString componentName() const;
};

// A test of structure only: data.attributes.provider_data must be an array.
bool looksLikeUpdogFeed(const JsonDocument &document);

// Picks the source's updogProvider, and updogService when it names one.
std::optional<SourceResult> parse(const JSONSource &source, const JsonDocument &document);

} // namespace UpdogSource

} // namespace lanternic
