#include "store/changenews.h"

#include "model/feedtext.h"
#include "store/displaysummary.h"

#include <algorithm>
#include <utility>

namespace lanternic::ChangeNews {

using namespace Qt::StringLiterals;

namespace {

std::optional<int> rankOf(Health before, Health after)
{
    if (before == after || before == Health::unknown || after == Health::unknown)
        return std::nullopt;
    if (after == Health::operational)
        return 0;
    if (severity(after) > severity(before))
        return after == Health::down ? 2 : 1;
    return std::nullopt; // better, but not yet recovered
}

} // namespace

Snapshot snapshot(const QList<SourceResult> &results, const SilenceStore &silence,
                  const QDateTime &now, const NotificationRules::Entries &rules)
{
    Snapshot watched;
    for (const SourceResult &result : results) {
        const NotifyRule rule = rules.value(result.id, NotifyRule::all);
        if (silence.isSilenced(result.id, now))
            continue;
        const QString name = FeedText::clean(result.name);
        QList<IncidentMention> incidents;
        for (const Incident &incident : result.incidents) {
            const IncidentMention mention{incident.stage, FeedText::clean(incident.name)};
            incidents.append(mention);
            const QString key = result.id + u'\n' + incident.id;
            watched.seenIncidents.insert(key);
            if (rule == NotifyRule::all)
                watched.incidents.insert(
                    key, {result.id, name, mention, incident.url ? incident.url : result.url});
        }
        if (result.components.isEmpty() || result.error) {
            if (rule != NotifyRule::never)
                watched.items.insert(result.id,
                                     {result.id, name, name,
                                      DisplaySummary::effectiveHealth(result, silence, now),
                                      result.url, incidents, rule == NotifyRule::outagesOnly,
                                      DisplaySummary::onlyMaintenance(result, silence, now)});
            continue;
        }
        for (const ComponentStatus &component : result.components) {
            const QString id = component.id.toString();
            const NotifyRule own = rules.value(id, rule);
            if (!silence.isSilenced(id, now) && own != NotifyRule::never)
                watched.items.insert(id, {result.id, name, FeedText::clean(component.name),
                                          component.health, result.url, incidents,
                                          own == NotifyRule::outagesOnly,
                                          component.health != Health::operational &&
                                              isMaintenanceStatus(component.status)});
        }
    }
    return watched;
}

Snapshot lastKnown(const Snapshot &previous, Snapshot current)
{
    // A failed check leaves one unknown item under the source's own id.
    QSet<QString> failed;
    for (auto it = current.items.constBegin(); it != current.items.constEnd(); ++it) {
        if (it.key() == it->sourceId && it->health == Health::unknown)
            failed.insert(it->sourceId);
    }
    for (auto it = previous.items.constBegin(); it != previous.items.constEnd(); ++it) {
        const auto now = current.items.find(it.key());
        if (now == current.items.end()) {
            if (failed.contains(it->sourceId))
                current.items.insert(it.key(), *it);
        } else if (now->health == Health::unknown) {
            now->health = it->health;
        }
    }
    for (auto it = previous.incidents.constBegin(); it != previous.incidents.constEnd(); ++it) {
        if (failed.contains(it->sourceId))
            current.incidents.insert(it.key(), *it);
    }
    current.seenIncidents.unite(previous.seenIncidents);
    return current;
}

namespace {

// The changes of health worth telling, worst first; then by source and name, so that the text
// does not depend on hashing.
QList<Change> healthChanges(const Snapshot &before, const Snapshot &after)
{
    QList<Change> changes;
    for (auto it = after.items.constBegin(); it != after.items.constEnd(); ++it) {
        const auto previous = before.items.constFind(it.key());
        if (previous == before.items.constEnd())
            continue;
        const bool outage = it->health == Health::down ||
                            (previous->health == Health::down && it->health == Health::operational);
        if (it->outagesOnly && !outage)
            continue;
        if (auto rank = rankOf(previous->health, it->health))
            changes.append({&*it, *rank, previous->health});
    }
    std::sort(changes.begin(), changes.end(), [](const Change &a, const Change &b) {
        if (a.rank != b.rank)
            return a.rank > b.rank;
        return std::tie(a.watched->sourceName, a.watched->name) <
               std::tie(b.watched->sourceName, b.watched->name);
    });
    return changes;
}

// New incidents of sources watched before whose every item is operational, then and now.
QList<const OpenIncident *> openedIncidents(const Snapshot &before, const Snapshot &after)
{
    QSet<QString> watchedBefore;
    QSet<QString> notOperational;
    for (const Watched &item : before.items) {
        watchedBefore.insert(item.sourceId);
        if (item.health != Health::operational)
            notOperational.insert(item.sourceId);
    }
    for (const Watched &item : after.items) {
        if (item.health != Health::operational)
            notOperational.insert(item.sourceId);
    }
    QList<const OpenIncident *> opened;
    for (auto it = after.incidents.constBegin(); it != after.incidents.constEnd(); ++it) {
        if (!before.seenIncidents.contains(it.key()) && watchedBefore.contains(it->sourceId) &&
            !notOperational.contains(it->sourceId))
            opened.append(&*it);
    }
    std::sort(opened.begin(), opened.end(), [](const OpenIncident *a, const OpenIncident *b) {
        return std::tie(a->sourceName, a->incident.name) <
               std::tie(b->sourceName, b->incident.name);
    });
    return opened;
}

} // namespace

std::optional<News> between(const Snapshot &before, const Snapshot &after)
{
    News news{healthChanges(before, after), openedIncidents(before, after)};
    if (news.changes.isEmpty() && news.opened.isEmpty())
        return std::nullopt;
    return news;
}

namespace {

struct Standing {
    QString name;
    Health health = Health::unknown;
    bool outagesOnly = true; // every item of the source is
};

// Each source's worst known health; unknown only when nothing is known.
QHash<QString, Standing> standings(const Snapshot &snapshot)
{
    QHash<QString, Standing> bySource;
    for (const Watched &item : snapshot.items) {
        Standing &standing = bySource[item.sourceId];
        standing.name = item.sourceName;
        standing.outagesOnly = standing.outagesOnly && item.outagesOnly;
        if (item.health != Health::unknown && (standing.health == Health::unknown ||
                                               severity(item.health) > severity(standing.health)))
            standing.health = item.health;
    }
    return bySource;
}

} // namespace

QuietLog quietFrom(const Snapshot &last)
{
    QuietLog log{last, {}};
    record(log, last);
    return log;
}

void record(QuietLog &log, const Snapshot &current)
{
    const auto now = standings(current);
    for (auto it = now.constBegin(); it != now.constEnd(); ++it) {
        if (it->health == Health::unknown)
            continue;
        const auto worst = log.worst.find(it.key());
        if (worst == log.worst.end())
            log.worst.insert(it.key(), it->health);
        else if (severity(it->health) > severity(*worst))
            *worst = it->health;
    }
}

QList<QuietChange> afterQuiet(const QuietLog &log, const Snapshot &now)
{
    const auto before = standings(log.start);
    const auto after = standings(now);
    QList<QuietChange> changes;
    for (auto it = after.constBegin(); it != after.constEnd(); ++it) {
        const auto start = before.constFind(it.key());
        if (start == before.constEnd() || start->health == Health::unknown ||
            it->health == Health::unknown)
            continue;
        const Health from = start->health, to = it->health;
        const Health peak = log.worst.value(it.key(), to);
        const bool outage = from == Health::down || peak == Health::down || to == Health::down;
        if (it->outagesOnly && !outage)
            continue;
        const bool passing = severity(peak) > severity(from) && severity(peak) > severity(to);
        if (passing || to != from)
            changes.append({it.key(), it->name, from, peak, to});
    }
    std::sort(changes.begin(), changes.end(),
              [](const QuietChange &a, const QuietChange &b) { return a.name < b.name; });
    return changes;
}

Follower::Step Follower::follow(Snapshot snapshot, bool muted)
{
    if (!std::exchange(m_started, true)) {
        m_current = std::move(snapshot);
        return Step::first;
    }
    Snapshot next = lastKnown(m_current, std::move(snapshot));
    m_previous = std::exchange(m_current, std::move(next));
    if (muted) {
        if (!m_quiet)
            m_quiet = quietFrom(m_previous);
        record(*m_quiet, m_current);
        return Step::quiet;
    }
    if (m_quiet) {
        m_endedQuiet = *std::exchange(m_quiet, std::nullopt);
        return Step::afterQuiet;
    }
    return Step::compared;
}

} // namespace lanternic::ChangeNews
