// Reachability from QNetworkInformation where a backend exists; no wake-ups: the poll loop's
// timer catches up after sleep by itself.

#include "platform/systemevents.h"

#include <QNetworkInformation>

namespace lanternic {

namespace {

class QtSystemEvents : public SystemEvents {
public:
    QtSystemEvents()
    {
        if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability))
            return;
        auto *information = QNetworkInformation::instance();
        m_reachability = information->reachability();
        connect(information, &QNetworkInformation::reachabilityChanged, this,
                [this](QNetworkInformation::Reachability reachability) {
                    const bool wasOnline =
                        m_reachability == QNetworkInformation::Reachability::Online;
                    const bool wasOffline = isOffline();
                    m_reachability = reachability;
                    if (isOffline() != wasOffline)
                        Q_EMIT offlineChanged(isOffline());
                    if (!wasOnline && reachability == QNetworkInformation::Reachability::Online)
                        Q_EMIT reconnected();
                });
    }

    bool isOffline() const override
    {
        return m_reachability == QNetworkInformation::Reachability::Disconnected;
    }

private:
    QNetworkInformation::Reachability m_reachability = QNetworkInformation::Reachability::Unknown;
};

} // namespace

std::unique_ptr<SystemEvents> SystemEvents::forThisComputer()
{
    return std::make_unique<QtSystemEvents>();
}

} // namespace lanternic
