#include "platform/socketwatcher.h"

#include <QHash>
#include <QList>
#include <QSocketNotifier>

namespace lanternic {

// One Qt notifier for reading and one for writing per socket. They are kept for the next
// socket when this one is let go: making and destroying them per connection costs more than
// the rest of a loopback transfer's event handling.
struct SocketWatcher::Private {
    struct Watch {
        QSocketNotifier *read = nullptr;
        QSocketNotifier *write = nullptr;
    };

    QObject *parent = nullptr;
    QHash<qintptr, Watch *> watched;
    QList<Watch *> spare;
    Ready ready;
    std::function<void()> settled;

    void want(QSocketNotifier *&notifier, qintptr socket, QSocketNotifier::Type type, bool wanted);
};

SocketWatcher::SocketWatcher(QObject *parent, Ready ready, std::function<void()> settled)
    : d(std::make_unique<Private>())
{
    d->parent = parent;
    d->ready = std::move(ready);
    d->settled = std::move(settled);
}

SocketWatcher::~SocketWatcher()
{
    for (Private::Watch *watch : d->watched.values() + d->spare) {
        delete watch->read;
        delete watch->write;
        delete watch;
    }
}

void SocketWatcher::watch(qintptr socket, bool read, bool write)
{
    Private::Watch *watch = d->watched.value(socket);
    if (!read && !write) {
        if (watch) {
            d->want(watch->read, socket, QSocketNotifier::Read, false);
            d->want(watch->write, socket, QSocketNotifier::Write, false);
            d->watched.remove(socket);
            d->spare.append(watch);
        }
        return;
    }
    if (!watch) {
        watch = d->spare.isEmpty() ? new Private::Watch : d->spare.takeLast();
        for (QSocketNotifier *notifier : {watch->read, watch->write}) {
            if (notifier)
                notifier->setSocket(socket);
        }
        d->watched.insert(socket, watch);
    }
    d->want(watch->read, socket, QSocketNotifier::Read, read);
    d->want(watch->write, socket, QSocketNotifier::Write, write);
}

void SocketWatcher::Private::want(QSocketNotifier *&notifier, qintptr socket,
                                  QSocketNotifier::Type type, bool wanted)
{
    if (!wanted) {
        if (notifier)
            notifier->setEnabled(false);
        return;
    }
    if (!notifier) {
        notifier = new QSocketNotifier(socket, type, parent);
        const bool reading = type == QSocketNotifier::Read;
        QObject::connect(notifier, &QSocketNotifier::activated, parent,
                         [this, reading](QSocketDescriptor descriptor) {
                             ready(qintptr(descriptor), reading, !reading);
                             settled();
                         });
    }
    notifier->setEnabled(true);
}

} // namespace lanternic
