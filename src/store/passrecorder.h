#pragma once

#include "store/checkhistory.h"
#include "store/healthlog.h"

#include <QDateTime>
#include <QObject>

class QSettings;

namespace lanternic {

class LanternicStore;
class SilenceStore;

// Keeps what each finished pass leaves behind: a tick in the check history, a change in the
// health log where health changed, the silences that lapsed pruned, and all of it saved,
// merged with what another program on the same settings file kept meanwhile.
class PassRecorder : public QObject {
    Q_OBJECT

public:
    // Loads the history and the log from defaults; what cannot be read starts empty.
    PassRecorder(LanternicStore &store, SilenceStore &silence, QSettings &defaults,
                 QObject *parent = nullptr);

    const CheckHistory &history() const { return m_history; }
    const HealthLog &healthLog() const { return m_healthLog; }

Q_SIGNALS:
    void historyChanged();

private:
    // now is the pass's time; previousPass the one before, invalid for the first.
    void record(const QDateTime &now, const QDateTime &previousPass);
    bool recordHealth(const QDateTime &now, const QDateTime &previousPass);
    void save(bool logChanged, const QDateTime &now);

    LanternicStore &m_store;
    SilenceStore &m_silence;
    QSettings &m_defaults;
    CheckHistory m_history;
    HealthLog m_healthLog;
};

} // namespace lanternic
