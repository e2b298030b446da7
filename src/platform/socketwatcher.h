#pragma once

#include <QObject>
#include <QtGlobal>
#include <functional>
#include <memory>

namespace lanternic {

// Watches sockets for reading and writing on the event loop of the thread that made it, and
// says which are ready: ready(socket, readable, writable) for each, then settled() once the
// turn's ready sockets have all been told. Each platform has its own implementation, chosen
// by the build: one kernel event set where there is one, one Qt notifier per socket elsewhere.
class SocketWatcher {
public:
    using Ready = std::function<void(qintptr socket, bool readable, bool writable)>;

    SocketWatcher(QObject *parent, Ready ready, std::function<void()> settled);
    ~SocketWatcher();
    SocketWatcher(const SocketWatcher &) = delete;
    SocketWatcher &operator=(const SocketWatcher &) = delete;

    // What to watch the socket for from now on; neither stops watching it.
    void watch(qintptr socket, bool read, bool write);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace lanternic
