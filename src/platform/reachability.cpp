#include "platform/reachability.h"

namespace lanternic {

ReachabilityEvents::ReachabilityEvents()
{
    if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability))
        return;
    auto *information = QNetworkInformation::instance();
    m_reachability = information->reachability();
    connect(information, &QNetworkInformation::reachabilityChanged, this,
            &ReachabilityEvents::reachabilityChanged);
}

bool ReachabilityEvents::isOffline() const
{
    return m_reachability == QNetworkInformation::Reachability::Disconnected;
}

void ReachabilityEvents::reachabilityChanged(QNetworkInformation::Reachability reachability)
{
    const bool wasOnline = m_reachability == QNetworkInformation::Reachability::Online;
    const bool wasOffline = isOffline();
    m_reachability = reachability;
    if (isOffline() != wasOffline)
        Q_EMIT offlineChanged(isOffline());
    if (!wasOnline && reachability == QNetworkInformation::Reachability::Online)
        Q_EMIT reconnected();
}

} // namespace lanternic
