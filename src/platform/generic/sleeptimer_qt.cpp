#include "platform/sleeptimer.h"

#include <QTimer>

namespace lanternic {

// Fallback for platforms without a suspend-aware timer of our own.
struct SleepTimer::Private {
    QTimer timer;
};

SleepTimer::SleepTimer(QObject *parent) : QObject(parent), d(std::make_unique<Private>())
{
    d->timer.setSingleShot(true);
    d->timer.setTimerType(Qt::VeryCoarseTimer);
    connect(&d->timer, &QTimer::timeout, this, &SleepTimer::timeout);
}

SleepTimer::~SleepTimer() = default;

void SleepTimer::start(std::chrono::milliseconds interval)
{
    d->timer.start(interval);
}

void SleepTimer::stop()
{
    d->timer.stop();
}

bool SleepTimer::isActive() const
{
    return d->timer.isActive();
}

} // namespace lanternic
