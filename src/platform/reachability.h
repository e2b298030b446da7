#pragma once

#include "platform/systemevents.h"

#include <QNetworkInformation>

namespace lanternic {

// Reachability from QNetworkInformation where a backend exists (NetworkManager's on Debian):
// the part of the system's events every platform has. Wake-ups come from subclasses.
class ReachabilityEvents : public SystemEvents {
public:
    ReachabilityEvents();

    bool isOffline() const override;

private:
    void reachabilityChanged(QNetworkInformation::Reachability reachability);

    QNetworkInformation::Reachability m_reachability = QNetworkInformation::Reachability::Unknown;
};

} // namespace lanternic
