#include "store/healthlog.h"

#include "model/settingskeys.h"
#include "store/storedjson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QSettings>
#include <algorithm>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

// Longer than this between two readings is a gap: the computer slept or the app was not
// running. Passes come at most an hour apart.
constexpr qint64 gapSeconds = 2 * 3600;

const QString stoppedWord = u"stopped"_s;

// Roughly what a change takes stored: its time and word, and its incidents' names.
qsizetype storedBytes(const HealthChange &change)
{
    qsizetype bytes = 32;
    for (const QString &name : change.incidents)
        bytes += name.size() + 4;
    return bytes;
}

// Drops the oldest changes of a source past its byte budget.
void keepWithinBudget(QList<HealthChange> &changes)
{
    qsizetype bytes = 0;
    qsizetype first = changes.size();
    while (first > 0 && bytes + storedBytes(changes[first - 1]) <= HealthLog::bytesPerSource)
        bytes += storedBytes(changes[--first]);
    changes.remove(0, first);
}

} // namespace

bool HealthLog::record(const QString &id, Health health, const QStringList &incidents,
                       const QDateTime &now, const std::optional<QDateTime> &lastSeen)
{
    QList<HealthChange> &changes = byId[id];
    // A clock stepped back must not put the log out of order.
    const QDateTime at = changes.isEmpty() ? now : std::max(now, changes.last().at);
    bool changed = false;
    if (!changes.isEmpty() && changes.last().health && lastSeen &&
        lastSeen->secsTo(at) > gapSeconds) {
        changes.append({*lastSeen, std::nullopt, {}});
        changed = true;
    }
    if (changes.isEmpty() || changes.last().health != health) {
        changes.append({at, health, incidents});
        changed = true;
    } else if (changes.last().incidents != incidents) {
        // Only the names changed: a page renaming its incident every pass is told a few times.
        qsizetype stretch = 0;
        for (qsizetype i = changes.size() - 1;
             i >= 0 && changes[i].health == health && stretch < namedChangesPerStretch; --i)
            ++stretch;
        if (stretch < namedChangesPerStretch) {
            changes.append({at, health, incidents});
            changed = true;
        }
    }
    // Only a log longer than most ever grow can be over budget: the others are not measured.
    if (changed && changes.size() > bytesPerSource / 1024)
        keepWithinBudget(changes);
    return changed;
}

bool HealthLog::stop(const QString &id, const QDateTime &at)
{
    QList<HealthChange> &changes = byId[id];
    if (changes.isEmpty() || !changes.last().health)
        return false;
    changes.append({at, std::nullopt, {}});
    return true;
}

bool HealthLog::trim(const QDateTime &now)
{
    const QDateTime cutoff = now.addDays(-keptDays);
    bool changed = false;
    for (auto it = byId.begin(); it != byId.end();) {
        // Whole stretches older than the cutoff go; the one it falls in stays.
        QList<HealthChange> &changes = it.value();
        qsizetype old = 0;
        while (old + 1 < changes.size() && changes[old + 1].at <= cutoff)
            ++old;
        changes.remove(0, old);
        changed = changed || old > 0;
        if (changes.isEmpty() || (changes.size() == 1 && !changes.first().health)) {
            it = byId.erase(it);
            changed = true;
        } else {
            ++it;
        }
    }
    return changed;
}

void HealthLog::merge(const HealthLog &other)
{
    for (auto it = other.byId.constBegin(); it != other.byId.constEnd(); ++it) {
        QList<HealthChange> &changes = byId[it.key()];
        const QList<HealthChange> &theirs = it.value();
        // Mostly what was stored is where ours began.
        if (changes.size() >= theirs.size() && changes.first(theirs.size()) == theirs)
            continue;
        QSet<std::pair<qint64, int>> ours;
        for (const HealthChange &change : std::as_const(changes))
            ours.insert({change.at.toMSecsSinceEpoch(), change.health ? int(*change.health) : -1});
        QList<HealthChange> merged;
        for (const HealthChange &change : theirs) {
            if (!ours.contains(
                    {change.at.toMSecsSinceEpoch(), change.health ? int(*change.health) : -1}))
                merged.append(change);
        }
        // At one instant, ours come last: they are the newer reading.
        merged += changes;
        std::stable_sort(merged.begin(), merged.end(),
                         [](const HealthChange &a, const HealthChange &b) { return a.at < b.at; });
        changes = std::move(merged);
    }
}

Uptime HealthLog::uptime(const QString &id, const QDateTime &from, const QDateTime &to) const
{
    Uptime result;
    qint64 operational = 0;
    std::optional<Trouble> trouble;
    QSet<QString> named; // the current trouble's incidents, for a look-up in constant time
    const QList<HealthChange> changes = byId.value(id);
    const auto endTrouble = [&](const QDateTime &at) {
        if (trouble) {
            trouble->end = at;
            result.troubles.append(*trouble);
            trouble.reset();
            named.clear();
        }
    };
    for (qsizetype i = 0; i < changes.size(); ++i) {
        const HealthChange &change = changes[i];
        const QDateTime start = std::max(change.at, from);
        const QDateTime end = i + 1 < changes.size() ? std::min(changes[i + 1].at, to) : to;
        if (changes[i].at >= to)
            break;
        const bool known = change.health && *change.health != Health::unknown;
        if (end > start && known) {
            result.watchedSeconds += start.secsTo(end);
            if (*change.health == Health::operational)
                operational += start.secsTo(end);
        }
        // Trouble runs from leaving operational until operational again or a gap.
        if (!change.health || *change.health == Health::operational) {
            endTrouble(std::max(change.at, from));
        } else if (*change.health != Health::unknown) {
            if (!trouble && end > from)
                trouble = Trouble{start, std::nullopt, *change.health, {}};
            if (trouble) {
                if (severity(*change.health) > severity(trouble->worst))
                    trouble->worst = *change.health;
                for (const QString &name : change.incidents) {
                    if (trouble->incidents.size() < incidentsPerTrouble && !named.contains(name)) {
                        named.insert(name);
                        trouble->incidents.append(name);
                    }
                }
            }
        }
    }
    if (trouble) // goes on past the window's end when the window ends now
        result.troubles.append(*trouble);
    if (result.watchedSeconds > 0)
        result.share = double(operational) / double(result.watchedSeconds);
    return result;
}

std::optional<HealthLog> HealthLog::load(QSettings &defaults)
{
    const QVariant stored = defaults.value(SettingsKeys::healthLog);
    if (!stored.isValid())
        return HealthLog();
    if (stored.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    return decode(stored.toByteArray());
}

void HealthLog::save(QSettings &defaults) const
{
    defaults.setValue(SettingsKeys::healthLog, encode());
}

QByteArray HealthLog::encode() const
{
    QByteArray out = "{\"byId\":{";
    QStringList ids = byId.keys();
    ids.sort();
    bool firstId = true;
    for (const QString &id : ids) {
        if (!firstId)
            out += ',';
        firstId = false;
        appendJsonString(out, id);
        out += ":[";
        bool first = true;
        for (const HealthChange &change : byId[id]) {
            out += first ? "[" : ",[";
            first = false;
            appendJsonNumber(out, referenceSeconds(change.at));
            out += ',';
            appendJsonString(out, change.health ? rawValue(*change.health) : stoppedWord);
            if (!change.incidents.isEmpty()) {
                out += ",[";
                for (qsizetype i = 0; i < change.incidents.size(); ++i) {
                    if (i > 0)
                        out += ',';
                    appendJsonString(out, change.incidents[i]);
                }
                out += ']';
            }
            out += ']';
        }
        out += ']';
    }
    out += "}}";
    // The settings keep the bytes with whatever room they have.
    out.squeeze();
    return out;
}

std::optional<HealthLog> HealthLog::decode(const QByteArray &data)
{
    const QJsonValue byIdValue = QJsonDocument::fromJson(data).object().value("byId"_L1);
    if (!byIdValue.isObject())
        return std::nullopt;
    HealthLog log;
    const QJsonObject sources = byIdValue.toObject();
    for (auto it = sources.begin(); it != sources.end(); ++it) {
        QList<HealthChange> changes;
        // What cannot be read (a word of a newer version, a broken entry) is skipped alone.
        for (const QJsonValue &value : it.value().toArray()) {
            const QJsonArray entry = value.toArray();
            if (entry.size() < 2 || !entry[0].isDouble() || !entry[1].isString())
                continue;
            HealthChange change{fromReferenceSeconds(entry[0].toDouble()), std::nullopt, {}};
            if (!change.at.isValid())
                continue;
            if (entry[1].toString() != stoppedWord) {
                change.health = healthFromRawValue(entry[1].toString());
                if (!change.health)
                    continue;
            }
            for (const QJsonValue &name : entry.at(2).toArray()) {
                if (change.incidents.size() < incidentsPerChange && name.isString())
                    change.incidents.append(name.toString().left(incidentNameLength));
            }
            changes.append(std::move(change));
        }
        // Written by a clock that stepped back, or by two writers: put in order.
        std::stable_sort(changes.begin(), changes.end(),
                         [](const HealthChange &a, const HealthChange &b) { return a.at < b.at; });
        keepWithinBudget(changes);
        if (!changes.isEmpty())
            log.byId.insert(it.key(), std::move(changes));
    }
    return log;
}

} // namespace lanternic
