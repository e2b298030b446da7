#pragma once

#include <QObject>
#include <memory>

namespace lanternic {

// What the system says about the network and sleep. Each platform has its own implementation,
// chosen by the build; tests drive a fake.
class SystemEvents : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // True while the system reports no network at all.
    virtual bool isOffline() const = 0;

    // The events of this computer: its network manager's reachability, and its wake-ups.
    static std::unique_ptr<SystemEvents> forThisComputer();

Q_SIGNALS:
    void offlineChanged(bool offline);
    // The network came back after being offline (or unknown).
    void reconnected();
    // The computer woke from sleep.
    void woke();
};

} // namespace lanternic
