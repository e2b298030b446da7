#pragma once

#include "sources/readers/platforms.h"

#include <QHash>
#include <QString>
#include <functional>
#include <optional>

namespace lanternic::network {
class Session;
}
class QObject;
class QSettings;

namespace lanternic {

// Remembers, per host, which platform's page it turned out to be. A cache, never a fact: pages
// move between platforms.
class SourceKindStore {
public:
    // Loads the cache from "Lanternic.sourceKinds"; anything unreadable gives an empty cache.
    explicit SourceKindStore(QSettings &defaults);

    // Keyed by host in lower case.
    const QHash<QString, SourceKind> &cache() const { return m_cache; }

    // Sets the host's kind and writes the whole cache through, with the hosts stored meanwhile.
    void record(const QString &host, SourceKind kind);
    // Drops a kind that stopped working, so that the host is probed again.
    void forget(const QString &host);

    // Asks the host which platform it is on, within the session's probe limit in all: the
    // platforms probed alone in turn (an incident.io widget, then a Statuspage summary), then
    // all the others that live on a page's own host at once, then its feeds (/history.atom,
    // /feed) in turn. done gets the kind whose document came, atlassian when the host answered
    // HTTP but with none of them, and nothing when the host could not be reached.
    static void probe(const QString &host, network::Session &session, QObject *context,
                      std::function<void(std::optional<SourceKind>)> done);

private:
    QSettings &m_defaults;
    QHash<QString, SourceKind> m_cache;
};

} // namespace lanternic
