#pragma once

#include "model/jsonsource.h"
#include "model/sourceresult.h"
#include "sources/readers/jsondecoder.h"

#include <QString>
#include <optional>

namespace lanternic {

// Reads the summary document that Atlassian Statuspage pages publish at /api/v2/summary.json.
namespace StatuspageSource {

struct Summary {
    struct Status {
        QString indicator;
        std::optional<QString> description;
    };
    // The id, status and group id are the document's own UTF-8, valid while it lives: most
    // become no text of their own.
    struct Component {
        QByteArrayView id;
        QString name;
        QByteArrayView status;
        std::optional<bool> group; // true marks a group container, not a real component
        std::optional<QByteArrayView> groupId;
    };
    struct Page {
        std::optional<QString> url;
    };

    Status status;
    std::optional<QList<Component>> components;
    std::optional<Page> page;
};

std::optional<Summary> decode(const JsonDocument &document);

// Honours the source's treatAsOperational words and includeGroups.
std::optional<SourceResult> parse(const JSONSource &source, const JsonDocument &document);

// The health a page-wide indicator stands for; unknown indicators count as unknown.
Health indicatorHealth(const QString &indicator);

} // namespace StatuspageSource

} // namespace lanternic
