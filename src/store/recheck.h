#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>

namespace lanternic {

class LanternicStore;
class SystemEvents;

// Checks again when it is worth it: a pass shortly after the network comes back or the
// computer wakes, one pass for events that come together, and none while the last one it
// started still runs. It also tells the store whether the system is offline.
class Recheck : public QObject {
    Q_OBJECT

public:
    Recheck(LanternicStore &store, SystemEvents &events,
            std::chrono::milliseconds delay = std::chrono::seconds(3), QObject *parent = nullptr);

private:
    void schedule();
    void run();

    LanternicStore &m_store;
    QTimer m_delay;
    bool m_running = false;
};

} // namespace lanternic
