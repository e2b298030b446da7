#pragma once

#include "model/jsonsource.h"
#include "model/sourceresult.h"
#include "sources/readers/jsondecoder.h"

#include <QList>
#include <QString>
#include <optional>

namespace lanternic {

// Reads our own relay feed, schema "lanternic.v1": health, detail and components stated directly.
namespace RelayFeedSource {

// Of a feed's "via" list (the watchers it passed through, the one that served it first), as
// many are read.
inline constexpr int maximumRelayHops = 16;

struct Document {
    struct Component {
        QString id;
        QString name;
        QString status;
        std::optional<QString> label;
    };
    QString schema;
    std::optional<QString> name;
    std::optional<QString> health;
    std::optional<QString> detail;
    std::optional<QString> url;
    std::optional<QList<Component>> components;
};

std::optional<SourceResult> parse(const JSONSource &source, const JsonDocument &document);

} // namespace RelayFeedSource

} // namespace lanternic
