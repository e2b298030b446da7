#include "present/changenotice.h"

#include "model/feedtext.h"
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
        if (result.components.isEmpty() || result.error) {
            watched.insert(result.id,
                           {result.id, name, name,
                            DisplaySummary::effectiveHealth(result, silence, now), result.url});
            continue;
        }
        for (const ComponentStatus &component : result.components) {
            if (!silence.isSilenced(component.id, now))
                watched.insert(component.id, {result.id, name, FeedText::clean(component.name),
                                              component.health, result.url});
        }
    }
    return watched;
}

std::optional<Notice> between(const Snapshot &before, const Snapshot &after)
{
    QList<Change> changes;
    for (auto it = after.constBegin(); it != after.constEnd(); ++it) {
        const auto previous = before.constFind(it.key());
        if (previous == before.constEnd())
            continue;
        if (auto rank = rankOf(previous->health, it->health))
            changes.append({&*it, *rank});
    }
    if (changes.isEmpty())
        return std::nullopt;
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
    for (qsizetype i = 0; i < std::min<qsizetype>(changes.size(), 3); ++i) {
        const Watched &item = *changes[i].watched;
        lines.append(item.name + u" \u2014 "_s + label(item.health).toLower());
    }
    if (changes.size() > 3)
        lines.append(u"and %1 more"_s.arg(changes.size() - 3));
    notice.body = lines.join(u'\n');
    return notice;
}

} // namespace lanternic::ChangeNotice
