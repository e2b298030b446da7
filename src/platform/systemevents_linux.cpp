// Reachability from QNetworkInformation (NetworkManager's backend on Debian), wake-ups from
// logind's PrepareForSleep on the system bus, or, without logind, from the boot-time clock
// running ahead of the monotonic one (it keeps counting while the computer sleeps).

#include "platform/systemevents.h"

#include <QDBusConnection>
#include <QNetworkInformation>
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

class LinuxSystemEvents : public SystemEvents {
    Q_OBJECT

public:
    LinuxSystemEvents()
    {
        if (QNetworkInformation::loadBackendByFeatures(
                QNetworkInformation::Feature::Reachability)) {
            auto *information = QNetworkInformation::instance();
            m_reachability = information->reachability();
            connect(information, &QNetworkInformation::reachabilityChanged, this,
                    &LinuxSystemEvents::reachabilityChanged);
        }
        QDBusConnection system = QDBusConnection::systemBus();
        m_logind =
            system.isConnected() &&
            system.connect(QStringLiteral("org.freedesktop.login1"),
                           QStringLiteral("/org/freedesktop/login1"),
                           QStringLiteral("org.freedesktop.login1.Manager"),
                           QStringLiteral("PrepareForSleep"), this, SLOT(prepareForSleep(bool)));
        if (!m_logind) {
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

    bool isOffline() const override
    {
        return m_reachability == QNetworkInformation::Reachability::Disconnected;
    }

private Q_SLOTS:
    void prepareForSleep(bool goingToSleep)
    {
        if (!goingToSleep)
            Q_EMIT woke();
    }

private:
    void reachabilityChanged(QNetworkInformation::Reachability reachability)
    {
        const bool wasOnline = m_reachability == QNetworkInformation::Reachability::Online;
        const bool wasOffline = isOffline();
        m_reachability = reachability;
        if (isOffline() != wasOffline)
            Q_EMIT offlineChanged(isOffline());
        if (!wasOnline && reachability == QNetworkInformation::Reachability::Online)
            Q_EMIT reconnected();
    }

    QNetworkInformation::Reachability m_reachability = QNetworkInformation::Reachability::Unknown;
    bool m_logind = false;
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
