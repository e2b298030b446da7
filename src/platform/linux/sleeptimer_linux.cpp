#include "platform/sleeptimer.h"

#include <QSocketNotifier>
#include <sys/timerfd.h>
#include <unistd.h>

namespace lanternic {

// CLOCK_BOOTTIME keeps counting through suspend, unlike the monotonic clock Qt's timers use.
struct SleepTimer::Private {
    int fd = -1;
    std::unique_ptr<QSocketNotifier> notifier;
    bool active = false;
};

SleepTimer::SleepTimer(QObject *parent) : QObject(parent), d(std::make_unique<Private>())
{
    d->fd = timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC);
    if (d->fd < 0)
        d->fd = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    d->notifier = std::make_unique<QSocketNotifier>(d->fd, QSocketNotifier::Read);
    d->notifier->setEnabled(false);
    connect(d->notifier.get(), &QSocketNotifier::activated, this, [this] {
        uint64_t expirations = 0;
        if (::read(d->fd, &expirations, sizeof expirations) != sizeof expirations)
            return;
        stop();
        Q_EMIT timeout();
    });
}

SleepTimer::~SleepTimer()
{
    d->notifier.reset();
    if (d->fd >= 0)
        ::close(d->fd);
}

void SleepTimer::start(std::chrono::milliseconds interval)
{
    const auto ms = std::max<qint64>(interval.count(), 1);
    itimerspec wait{};
    wait.it_value.tv_sec = time_t(ms / 1000);
    wait.it_value.tv_nsec = long(ms % 1000) * 1'000'000;
    timerfd_settime(d->fd, 0, &wait, nullptr);
    d->active = true;
    d->notifier->setEnabled(true);
}

void SleepTimer::stop()
{
    const itimerspec disarmed{};
    timerfd_settime(d->fd, 0, &disarmed, nullptr);
    d->active = false;
    d->notifier->setEnabled(false);
}

bool SleepTimer::isActive() const
{
    return d->active;
}

} // namespace lanternic
