#pragma once

#include "model/health.h"
#include "model/urls.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <optional>
#include <utility>

namespace lanternic {

// A component's id: its source's id, "::" and the feed's own key, so that it is unique across
// sources. Kept as UTF-8 at its exact size, in about half the room of a QString: a pass over
// thousands of sources holds hundreds of thousands. Lone surrogates become U+FFFD, as in every
// feed text.
class ComponentId {
public:
    ComponentId() = default;
    ComponentId(QStringView sourceId, QStringView key);
    // An id written whole, "github::api".
    ComponentId(const QString &text);

    QString toString() const { return QString::fromUtf8(m_utf8); }

    bool operator==(const ComponentId &) const = default;
    friend size_t qHash(const ComponentId &id, size_t seed = 0) noexcept
    {
        return qHash(id.m_utf8, seed);
    }

private:
    friend class ComponentIds;
    QByteArray m_utf8;
};

// The ids of one source's components, from keys as a document writes them (UTF-8): the
// source's part is made once, not once a component.
class ComponentIds {
public:
    explicit ComponentIds(QStringView sourceId);
    ComponentId operator()(QByteArrayView key) const;

private:
    QString m_sourceId;
    QByteArray m_prefix; // "sourceId::", well-formed
};

// One component of a service as its feed reported it.
struct ComponentStatus {
    ComponentId id;
    QString name;
    Health health = Health::unknown;
    QString status; // the feed's own word, unmapped

    bool operator==(const ComponentStatus &) const = default;
};

// An incident a page reports as open. Texts are the feed's own, untrusted.
struct Incident {
    QString id;
    QString name;
    QString stage;  // "investigating", "identified", "monitoring", as the page writes it
    QString impact; // empty where the page gives none
    std::optional<WebLink> url;
    QDateTime startedAt;
    QDateTime updatedAt;
    QString update; // the latest update's text

    bool operator==(const Incident &) const = default;
};

// A maintenance window a page announces, in progress or to come.
struct Maintenance {
    QString id;
    QString name;
    QString status; // "scheduled", "in_progress", "verifying", as the page writes it
    QDateTime startsAt;
    QDateTime endsAt;
    std::optional<WebLink> url;

    bool operator==(const Maintenance &) const = default;

    bool isInProgress(const QDateTime &now) const;
};

// The outcome of one check of one source.
struct SourceResult {
    QString id;
    QString name;
    Health health = Health::unknown;
    QString detail;
    std::optional<WebLink> url;
    QDateTime checkedAt;
    std::optional<QString> error; // set only when the check failed
    QList<ComponentStatus> components;
    // News beside the health, never deciding it.
    QList<Incident> incidents;
    QList<Maintenance> maintenances;
    // The watchers a relay feed passed through on its way here, its maker first.
    QStringList relayedVia;

    bool operator==(const SourceResult &) const = default;

    // Lone surrogates in any text become U+FFFD, so that every output can write it.
    void makeWellFormed();

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
