#include "present/changenotice.h"

#include "model/feedtext.h"
#include "present/displaytext.h"
#include "store/displaysummary.h"

#include <QCoreApplication>
#include <algorithm>

namespace lanternic::ChangeNotice {

using namespace Qt::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(ChangeNotice)
};

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
                  const QDateTime &now, const NotificationRules::Entries &rules)
{
    Snapshot watched;
    for (const SourceResult &result : results) {
        const NotifyRule rule = rules.value(result.id, NotifyRule::all);
        if (silence.isSilenced(result.id, now))
            continue;
        const QString name = FeedText::clean(result.name);
        QStringList incidents;
        for (const Incident &incident : result.incidents) {
            const QString line = Text::tr("%1: %2").arg(DisplayText::stageText(incident.stage),
                                                        FeedText::clean(incident.name));
            incidents.append(line);
            const QString key = result.id + u'\n' + incident.id;
            watched.seenIncidents.insert(key);
            if (rule == NotifyRule::all)
                watched.incidents.insert(key, {result.id, name, FeedText::clean(incident.name),
                                               line, incident.url ? incident.url : result.url});
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
            const NotifyRule own = rules.value(component.id, rule);
            if (!silence.isSilenced(component.id, now) && own != NotifyRule::never)
                watched.items.insert(component.id,
                                     {result.id, name, FeedText::clean(component.name),
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
            changes.append({&*it, *rank});
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
        return std::tie(a->sourceName, a->name) < std::tie(b->sourceName, b->name);
    });
    return opened;
}

QString openedLine(const OpenIncident *incident)
{
    return Text::tr("%1: new incident \u2014 %2").arg(incident->sourceName, incident->name);
}

// Nothing changed its health, but incidents opened: a quiet notice of them.
Notice incidentNotice(const QList<const OpenIncident *> &opened)
{
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
        lines.append(Text::tr("and %n more", nullptr, int(opened.size() - 3)));
    notice.body = lines.join(u'\n');
    return notice;
}

// Titled after the worst change; what the page says is happening comes before the components
// it touches, then the incidents that opened elsewhere.
Notice changeNotice(const QList<Change> &changes, const QList<const OpenIncident *> &opened)
{
    const Watched &worst = *changes.first().watched;
    Notice notice;
    notice.worst = worst.health;
    notice.sourceId = worst.sourceId;
    notice.page = worst.page;
    notice.title =
        worst.health == Health::operational ? Text::tr("%1 recovered").arg(worst.sourceName)
        : worst.maintenance ? Text::tr("%1 is under maintenance").arg(worst.sourceName)
                            : Text::tr("%1 is %2").arg(worst.sourceName, stateWord(worst.health));
    QStringList lines;
    if (worst.health != Health::operational)
        lines += worst.incidents.mid(0, 2);
    qsizetype shown = 0;
    for (; shown < changes.size() && lines.size() < 3; ++shown) {
        const Watched &item = *changes[shown].watched;
        lines.append(item.maintenance
                         ? Text::tr("%1 \u2014 under maintenance").arg(item.name)
                         : Text::tr("%1 \u2014 %2").arg(item.name, stateWord(item.health)));
    }
    if (shown < changes.size())
        lines.append(Text::tr("and %n more", nullptr, int(changes.size() - shown)));
    for (const OpenIncident *incident : opened.mid(0, 2))
        lines.append(openedLine(incident));
    notice.body = lines.join(u'\n');
    return notice;
}

} // namespace

std::optional<Notice> between(const Snapshot &before, const Snapshot &after)
{
    const QList<Change> changes = healthChanges(before, after);
    const QList<const OpenIncident *> opened = openedIncidents(before, after);
    if (!changes.isEmpty())
        return changeNotice(changes, opened);
    if (!opened.isEmpty())
        return incidentNotice(opened);
    return std::nullopt;
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

std::optional<Notice> afterQuiet(const QuietLog &log, const Snapshot &now)
{
    const auto before = standings(log.start);
    const auto after = standings(now);
    struct Line {
        QString sourceId;
        QString name;
        QString text;
        Health health;
    };
    QList<Line> lines;
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
        QString text;
        if (severity(peak) > severity(from) && severity(peak) > severity(to)) {
            text = to == Health::operational
                       ? Text::tr("%1 went %2 and recovered").arg(it->name, stateWord(peak))
                       : Text::tr("%1 went %2 and is %3 now")
                             .arg(it->name, stateWord(peak), stateWord(to));
        } else if (to != from) {
            text = to == Health::operational ? Text::tr("%1 recovered").arg(it->name)
                                             : Text::tr("%1 is %2").arg(it->name, stateWord(to));
        } else {
            continue;
        }
        lines.append({it.key(), it->name, text, to});
    }
    if (lines.isEmpty())
        return std::nullopt;
    std::sort(lines.begin(), lines.end(),
              [](const Line &a, const Line &b) { return a.name < b.name; });
    QStringList texts;
    for (const Line &line : lines.mid(0, 4))
        texts.append(line.text);
    if (lines.size() > 4)
        texts.append(Text::tr("and %n more", nullptr, int(lines.size() - 4)));
    Notice notice;
    notice.title = Text::tr("While quiet");
    notice.body = texts.join(Text::tr("; "));
    notice.worst = Health::operational;
    for (const Line &line : lines)
        notice.worst = severity(line.health) > severity(notice.worst) ? line.health : notice.worst;
    notice.sourceId = lines.first().sourceId;
    const auto item = std::find_if(now.items.cbegin(), now.items.cend(),
                                   [&](const Watched &w) { return w.sourceId == notice.sourceId; });
    if (item != now.items.cend())
        notice.page = item->page;
    return notice;
}

} // namespace lanternic::ChangeNotice
