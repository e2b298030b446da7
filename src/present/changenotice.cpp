#include "present/changenotice.h"

#include "model/feedtext.h"
#include "present/displaytext.h"
#include "store/displaysummary.h"

#include <algorithm>

namespace lanternic::ChangeNotice {

using namespace Qt::StringLiterals;

namespace {

struct Change {
    const Watched *watched;
    int rank; // down 2, degraded 1, recovered 0
};

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
                  const QDateTime &now)
{
    Snapshot watched;
    for (const SourceResult &result : results) {
        if (silence.isSilenced(result.id, now))
            continue;
        const QString name = FeedText::clean(result.name);
        QStringList incidents;
        for (const Incident &incident : result.incidents) {
            const QString line =
                DisplayText::stageText(incident.stage) + u": "_s + FeedText::clean(incident.name);
            incidents.append(line);
            const QString key = result.id + u'\n' + incident.id;
            watched.incidents.insert(key, {result.id, name, FeedText::clean(incident.name), line,
                                           incident.url ? incident.url : result.url});
            watched.seenIncidents.insert(key);
        }
        if (result.components.isEmpty() || result.error) {
            watched.items.insert(result.id, {result.id, name, name,
                                             DisplaySummary::effectiveHealth(result, silence, now),
                                             result.url, incidents});
            continue;
        }
        for (const ComponentStatus &component : result.components) {
            if (!silence.isSilenced(component.id, now))
                watched.items.insert(component.id,
                                     {result.id, name, FeedText::clean(component.name),
                                      component.health, result.url, incidents});
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

std::optional<Notice> between(const Snapshot &before, const Snapshot &after)
{
    QList<Change> changes;
    for (auto it = after.items.constBegin(); it != after.items.constEnd(); ++it) {
        const auto previous = before.items.constFind(it.key());
        if (previous == before.items.constEnd())
            continue;
        if (auto rank = rankOf(previous->health, it->health))
            changes.append({&*it, *rank});
    }
    // New incidents of sources watched before whose every item is operational, then and now.
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
        return std::tie(a->sourceName, a->name) < std::tie(b->sourceName, b->name);
    });
    const auto openedLine = [](const OpenIncident *incident) {
        return incident->sourceName + u": new incident \u2014 "_s + incident->name;
    };
    if (changes.isEmpty()) {
        if (opened.isEmpty())
            return std::nullopt;
        Notice notice;
        notice.title = openedLine(opened.first());
        notice.worst = Health::operational;
        notice.quiet = true;
        notice.sourceId = opened.first()->sourceId;
        notice.page = opened.first()->page;
        QStringList lines{opened.first()->line};
        for (qsizetype i = 1; i < std::min<qsizetype>(opened.size(), 3); ++i)
            lines.append(openedLine(opened[i]));
        if (opened.size() > 3)
            lines.append(u"and %1 more"_s.arg(opened.size() - 3));
        notice.body = lines.join(u'\n');
        return notice;
    }
    // Worst first; then by source and name, so that the text does not depend on hashing.
    std::sort(changes.begin(), changes.end(), [](const Change &a, const Change &b) {
        if (a.rank != b.rank)
            return a.rank > b.rank;
        return std::tie(a.watched->sourceName, a.watched->name) <
               std::tie(b.watched->sourceName, b.watched->name);
    });

    const Watched &worst = *changes.first().watched;
    Notice notice;
    notice.worst = worst.health;
    notice.sourceId = worst.sourceId;
    notice.page = worst.page;
    notice.title = worst.health == Health::operational
                       ? worst.sourceName + u" recovered"_s
                       : worst.sourceName + u" is "_s + label(worst.health).toLower();
    QStringList lines;
    // What the page says is happening comes before the components it touches.
    if (worst.health != Health::operational)
        lines += worst.incidents.mid(0, 2);
    qsizetype shown = 0;
    for (; shown < changes.size() && lines.size() < 3; ++shown) {
        const Watched &item = *changes[shown].watched;
        lines.append(item.name + u" \u2014 "_s + label(item.health).toLower());
    }
    if (shown < changes.size())
        lines.append(u"and %1 more"_s.arg(changes.size() - shown));
    for (const OpenIncident *incident : opened.mid(0, 2))
        lines.append(openedLine(incident));
    notice.body = lines.join(u'\n');
    return notice;
}

} // namespace lanternic::ChangeNotice
