#include "platform/socketwatcher.h"

#include <QSet>
#include <QSocketNotifier>
#include <sys/epoll.h>
#include <unistd.h>

namespace lanternic {

// One epoll set, itself watched by one Qt notifier: a socket costs a system call when what it
// is watched for changes, and a turn of the event loop takes every ready socket at once.
// glib, under Qt's notifiers, rebuilds its poll list and wakes its loop at every change.
struct SocketWatcher::Private {
    int set = -1;
    QSocketNotifier *notifier = nullptr;
    QSet<qintptr> watched;
    Ready ready;
    std::function<void()> settled;

    void drain();
};

SocketWatcher::SocketWatcher(QObject *parent, Ready ready, std::function<void()> settled)
    : d(std::make_unique<Private>())
{
    d->ready = std::move(ready);
    d->settled = std::move(settled);
    d->set = epoll_create1(EPOLL_CLOEXEC);
    d->notifier = new QSocketNotifier(d->set, QSocketNotifier::Read, parent);
    QObject::connect(d->notifier, &QSocketNotifier::activated, parent, [this] { d->drain(); });
}

SocketWatcher::~SocketWatcher()
{
    delete d->notifier;
    ::close(d->set);
}

void SocketWatcher::watch(qintptr socket, bool read, bool write)
{
    if (!read && !write) {
        if (d->watched.remove(socket))
            epoll_ctl(d->set, EPOLL_CTL_DEL, int(socket), nullptr);
        return;
    }
    epoll_event event{};
    event.events = (read ? uint32_t(EPOLLIN) : 0u) | (write ? uint32_t(EPOLLOUT) : 0u);
    event.data.fd = int(socket);
    const bool known = d->watched.contains(socket);
    // A socket closed without a word leaves the set by itself, and its number may come back.
    if (epoll_ctl(d->set, known ? EPOLL_CTL_MOD : EPOLL_CTL_ADD, int(socket), &event) != 0)
        epoll_ctl(d->set, known ? EPOLL_CTL_ADD : EPOLL_CTL_MOD, int(socket), &event);
    d->watched.insert(socket);
}

void SocketWatcher::Private::drain()
{
    epoll_event events[64];
    const int count = epoll_wait(set, events, 64, 0);
    for (int i = 0; i < count; ++i) {
        // An error or a hang-up is for the reader or the writer to find.
        const uint32_t got = events[i].events;
        const bool broken = got & (EPOLLERR | EPOLLHUP);
        ready(events[i].data.fd, broken || (got & EPOLLIN), broken || (got & EPOLLOUT));
    }
    if (count > 0)
        settled();
}

} // namespace lanternic
