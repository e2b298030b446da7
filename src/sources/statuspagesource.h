#pragma once

#include "model/sourceresult.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QSet>
#include <QString>
#include <QUrl>
#include <optional>
#include <variant>

namespace lanternic {

struct DecodingFailure {
    QString description;
};

// Reads the summary document that Atlassian Statuspage pages publish at /api/v2/summary.json.
namespace StatuspageSource {

struct Summary {
    struct Status {
        QString indicator;
        std::optional<QString> description;
    };
    struct Component {
        QString id;
        QString name;
        QString status;
        std::optional<bool> group; // true marks a group container, not a real component
        std::optional<QString> groupId;
    };
    struct Page {
        std::optional<QString> url;
    };

    Status status;
    std::optional<QList<Component>> components;
    std::optional<Page> page;
};

using Reading = std::variant<SourceResult, DecodingFailure>;

std::variant<Summary, DecodingFailure> decode(const QJsonDocument &document);

Reading parse(const QString &id, const QString &name, const QUrl &home,
              const QSet<QString> &treatAsOperational,
              const std::optional<QSet<QString>> &includeGroups, const QJsonDocument &document);
Reading parse(const QString &id, const QString &name, const QUrl &home,
              const QSet<QString> &treatAsOperational,
              const std::optional<QSet<QString>> &includeGroups, const QByteArray &data);

// The health a component status word stands for; unknown words count as degraded.
Health componentHealth(const QString &status, const QSet<QString> &treatAsOperational = {});

// The health a page-wide indicator stands for; unknown indicators count as unknown.
Health indicatorHealth(const QString &indicator);

} // namespace StatuspageSource

} // namespace lanternic
