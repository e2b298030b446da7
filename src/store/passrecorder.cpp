#include "store/passrecorder.h"

#include "config/settingsfile.h"
#include "store/displaysummary.h"
#include "store/lanternicstore.h"
#include "store/silencestore.h"

#include <QSet>

namespace lanternic {

PassRecorder::PassRecorder(LanternicStore &store, SilenceStore &silence, QSettings &defaults,
                           QObject *parent)
    : QObject(parent), m_store(store), m_silence(silence), m_defaults(defaults),
      m_history(CheckHistory::load(defaults)),
      m_healthLog(HealthLog::load(defaults).value_or(HealthLog()))
{
    connect(&store, &LanternicStore::passPublished, this, &PassRecorder::record);
}

void PassRecorder::record(const QDateTime &now, const QDateTime &previousPass)
{
    const bool logChanged = recordHealth(now, previousPass);
    for (const SourceResult &result : m_store.results())
        m_history.record(result.id, DisplaySummary::effectiveHealth(result, m_silence, now), now);
    save(logChanged, now);
    Q_EMIT historyChanged();
    // After saving: with thousands of sources, these sets are as large as what it writes.
    QSet<QString> trouble;
    QSet<QString> unread;
    for (const SourceResult &result : m_store.results()) {
        if (result.health != Health::operational)
            trouble.insert(result.id);
        if (result.error)
            unread.insert(result.id);
        for (const ComponentStatus &component : result.affectedComponents())
            trouble.insert(component.id.toString());
    }
    m_silence.prune(trouble, unread, now);
}

// The log keeps health as read; while the system has no network nothing is watched.
bool PassRecorder::recordHealth(const QDateTime &now, const QDateTime &previousPass)
{
    bool changed = m_healthLog.trim(now);
    for (const SourceResult &result : m_store.results()) {
        if (m_store.isOffline()) {
            changed =
                m_healthLog.stop(result.id, previousPass.isValid() ? previousPass : now) || changed;
            continue;
        }
        QStringList incidents;
        for (const Incident &incident : result.incidents.mid(0, 5))
            incidents.append(incident.name.left(200));
        const QList<HealthTick> ticks = m_history.byId.value(result.id);
        const std::optional<QDateTime> lastSeen =
            previousPass.isValid()
                ? std::optional(previousPass)
                : (ticks.isEmpty() ? std::nullopt : std::optional(ticks.last().date));
        changed = m_healthLog.record(result.id, result.health, incidents, now, lastSeen) || changed;
    }
    return changed;
}

// Another program on the same settings file may have kept ticks since: both are kept.
void PassRecorder::save(bool logChanged, const QDateTime &now)
{
    SettingsFile::update(m_defaults, [this, logChanged, &now] {
        m_history.mergeAndSave(m_defaults);
        // Written only when something changed, which most passes do not.
        // What is stored but cannot be read is not saved over.
        const std::optional<HealthLog> stored =
            logChanged ? HealthLog::load(m_defaults) : std::nullopt;
        if (stored) {
            m_healthLog.merge(*stored);
            m_healthLog.trim(now);
            m_healthLog.save(m_defaults);
        }
    });
}

} // namespace lanternic
