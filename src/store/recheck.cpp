#include "store/recheck.h"

#include "platform/systemevents.h"
#include "store/lanternicstore.h"

namespace lanternic {

Recheck::Recheck(LanternicStore &store, SystemEvents &events, std::chrono::milliseconds delay,
                 QObject *parent)
    : QObject(parent), m_store(store)
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(delay);
    connect(&m_delay, &QTimer::timeout, this, &Recheck::run);
    connect(&events, &SystemEvents::reconnected, this, &Recheck::schedule);
    connect(&events, &SystemEvents::woke, this, &Recheck::schedule);
    connect(&events, &SystemEvents::offlineChanged, &store, &LanternicStore::setOffline);
    store.setOffline(events.isOffline());
}

void Recheck::schedule()
{
    // A second event while one waits joins it.
    if (!m_delay.isActive())
        m_delay.start();
}

void Recheck::run()
{
    if (m_running)
        return;
    m_running = true;
    m_store.refresh([this] { m_running = false; });
}

} // namespace lanternic
