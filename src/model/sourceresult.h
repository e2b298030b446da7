#pragma once

#include "model/health.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QUrl>
#include <optional>
#include <utility>

namespace lanternic {

// One component of a service as its feed reported it.
struct ComponentStatus {
    QString id; // the source id, "::" and the feed's own key, unique across sources
    QString name;
    Health health = Health::unknown;
    QString status; // the feed's own word, unmapped

    bool operator==(const ComponentStatus &) const = default;
};

// The outcome of one check of one source.
struct SourceResult {
    QString id;
    QString name;
    Health health = Health::unknown;
    QString detail;
    std::optional<QUrl> url;
    QDateTime checkedAt;
    std::optional<QString> error; // set only when the check failed
    QList<ComponentStatus> components;

    bool operator==(const SourceResult &) const = default;

    QList<ComponentStatus> affectedComponents() const;

    // The detail line for affected components: "API — down" for one, "3 components affected"
    // for more. health is the one component's (or the worst) health.
    static QString affectedDetail(const ComponentStatus &first, qsizetype count, Health health);

    // A document that names one component twice is read by its first mention.
    static void keepFirstOfEachId(QList<ComponentStatus> &components);

    // Folds components into one health and one detail line; allClearText when none is affected.
    static std::pair<Health, QString> summarize(const QList<ComponentStatus> &components,
                                                const QString &allClearText);
};

} // namespace lanternic
