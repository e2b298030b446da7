#pragma once

#include "model/jsonsource.h"
#include "model/sourceresult.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/platforms.h"

#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

// Reads the widget document that incident.io status pages publish at /proxy/<host>.
namespace IncidentIOSource {

struct Component {
    std::optional<QString> componentId;
    std::optional<QString> id;
    std::optional<QString> name;
    std::optional<bool> hidden;
};

struct Group {
    std::optional<QString> name;
    std::optional<QList<Component>> components;
};

struct Item {
    std::optional<Group> group;
    std::optional<Component> component;
};

struct Structure {
    std::optional<QList<Item>> items;
};

struct AffectedRef {
    std::optional<QString> componentId;
    std::optional<QString> id;
    std::optional<QString> name;
    std::optional<QString> status;
    std::optional<QString> currentStatus;
};

struct Incident {
    std::optional<QString> name;
    std::optional<QList<AffectedRef>> affectedComponents;
};

struct Summary {
    std::optional<QString> publicUrl;
    std::optional<Structure> structure;
    std::optional<QList<AffectedRef>> affectedComponents;
    std::optional<QList<Incident>> ongoingIncidents;
};

std::optional<QUrl> widgetURL(const Site &site, const std::optional<QString> &subpage);

// A test of key presence only: does the body look like a widget document at all?
bool looksLikeIncidentWidget(const JsonDocument &document);

std::optional<SourceResult> parse(const JSONSource &source, const JsonDocument &document);

} // namespace IncidentIOSource

} // namespace lanternic
