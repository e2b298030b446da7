// Reachability from QNetworkInformation (NetworkManager's backend on Debian), wake-ups from
// logind's PrepareForSleep on the system bus, or, without logind, from the boot-time clock
// running ahead of the monotonic one (it keeps counting while the computer sleeps).

#include "platform/reachability.h"

#include <QDBusConnection>
#include <QTimer>
#include <time.h>

namespace lanternic {

namespace {

qint64 sleptMs()
{
    timespec boot{}, monotonic{};
    clock_gettime(CLOCK_BOOTTIME, &boot);
    clock_gettime(CLOCK_MONOTONIC, &monotonic);
    return (qint64(boot.tv_sec) - monotonic.tv_sec) * 1000 +
           (qint64(boot.tv_nsec) - monotonic.tv_nsec) / 1'000'000;
}

class LinuxSystemEvents : public ReachabilityEvents {
    Q_OBJECT

public:
    LinuxSystemEvents()
    {
        QDBusConnection system = QDBusConnection::systemBus();
        const bool logind =
            system.isConnected() &&
            system.connect(QStringLiteral("org.freedesktop.login1"),
                           QStringLiteral("/org/freedesktop/login1"),
                           QStringLiteral("org.freedesktop.login1.Manager"),
                           QStringLiteral("PrepareForSleep"), this, SLOT(prepareForSleep(bool)));
        if (!logind) {
            m_slept = sleptMs();
            m_clockWatch.setInterval(std::chrono::seconds(30));
            m_clockWatch.setTimerType(Qt::VeryCoarseTimer);
            connect(&m_clockWatch, &QTimer::timeout, this, [this] {
                const qint64 slept = sleptMs();
                if (slept - std::exchange(m_slept, slept) > 5000)
                    Q_EMIT woke();
            });
            m_clockWatch.start();
        }
    }

private Q_SLOTS:
    void prepareForSleep(bool goingToSleep)
    {
        if (!goingToSleep)
            Q_EMIT woke();
    }

private:
    qint64 m_slept = 0;
    QTimer m_clockWatch;
};

} // namespace

std::unique_ptr<SystemEvents> SystemEvents::forThisComputer()
{
    return std::make_unique<LinuxSystemEvents>();
}

} // namespace lanternic

#include "systemevents_linux.moc"
