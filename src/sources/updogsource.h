#pragma once

#include "model/sourceresult.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QString>
#include <QUrl>
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
bool looksLikeUpdogFeed(const QJsonDocument &document);
bool looksLikeUpdogFeed(const QByteArray &data);

std::optional<SourceResult> parse(const QString &id, const QString &name, const QUrl &home,
                                  const std::optional<QString> &provider,
                                  const std::optional<QString> &service,
                                  const QJsonDocument &document);
std::optional<SourceResult> parse(const QString &id, const QString &name, const QUrl &home,
                                  const std::optional<QString> &provider,
                                  const std::optional<QString> &service, const QByteArray &data);

} // namespace UpdogSource

} // namespace lanternic
