#pragma once

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

// The page kind of a bare host: which document it publishes its status in.
enum class SourceKind { atlassian, incidentio };

QString rawValue(SourceKind kind);
std::optional<SourceKind> sourceKindFromRawValue(QStringView text);

// Remembers, per host, whether it turned out to be a Statuspage or an incident.io page.
class SourceKindStore {
public:
    // Loads the cache from "Lanternic.sourceKinds"; anything unreadable gives an empty cache.
    explicit SourceKindStore(QSettings &defaults);

    // Keyed by host in lower case.
    const QHash<QString, SourceKind> &cache() const { return m_cache; }

    // Sets the host's kind and writes the whole cache through, with the hosts stored meanwhile.
    void record(const QString &host, SourceKind kind);

    // Asks the host for an incident.io widget. done gets incidentio for a widget answer,
    // atlassian for any other HTTP answer and nothing when the host could not be reached.
    static void probe(const QString &host, network::Session &session, QObject *context,
                      std::function<void(std::optional<SourceKind>)> done);

private:
    QSettings &m_defaults;
    QHash<QString, SourceKind> m_cache;
};

} // namespace lanternic
