#pragma once

#include "model/jsonsource.h"
#include "sources/readers/platforms.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QUrl>
#include <optional>
#include <variant>

namespace lanternic {

// One configured value after classification.
struct Target {
    // A feed URL, fetched exactly as written.
    struct Endpoint {
        QUrl url;
    };
    // A status-page host, with the port when one was written, and an optional sub-page.
    struct Base {
        QString host;
        std::optional<QString> subpath;
        QUrl home;
        std::optional<QUrl> asIs; // kept only when a scheme and a sub-page were written
    };
    // A provider page on the Updog outage service.
    struct Updog {
        std::optional<QString> provider;
        std::optional<QString> service;
        QUrl home;
    };

    std::variant<Endpoint, Base, Updog> value;
    static constexpr std::size_t endpointForm = 0, baseForm = 1, updogForm = 2;
    QString writtenHost; // the host as written: parsing lower-cases it, but ids keep the case

    static std::optional<Target> classify(const QString &value);
};

struct SourceEntry {
    QString label;
    QString value;
};

// What one non-blank line of the sources text became, or why it is ignored.
struct LineReading {
    // How a line with a source is read.
    enum class Kind {
        feed,     // fetched as written
        updog,    // a provider page on the Updog outage service
        platform, // a bare host whose platform is known
        probe,    // a bare host whose platform is not known yet
    };
    // Why a line without one is ignored.
    enum class Ignored { noEquals, noLabel, noAddress, unsupportedScheme, noHost };

    int line = 0; // from 1
    QString label;
    std::optional<JSONSource> source;
    Kind kind = Kind::feed;                      // with a source
    SourceKind platform = SourceKind::atlassian; // for Kind::platform
    Ignored ignored = Ignored::noHost;           // without a source
    QString scheme;                              // for Ignored::unsupportedScheme: "ftp"
    int sameAs = 0; // the earlier line with the same feed address, or 0
};

// What every source takes from the settings, beside what its own line says.
struct SourceOptions {
    // Statuspage's "under_maintenance" reads as operational on every source.
    bool treatMaintenanceAsOperational = false;

    bool operator==(const SourceOptions &) const = default;
};

// Turns the sources text into the sources to poll. Stateless.
namespace SourceRegistry {

inline const QString updogHost = QStringLiteral("updog.ai");

// Never empty: text without a usable line gives the default sources.
QList<JSONSource> sources(const QString &text, const QHash<QString, SourceKind> &kinds,
                          const SourceOptions &options = {});
QList<SourceEntry> entries(const QString &text);
// The hosts of the bare-host lines, first appearance first.
QStringList baseHosts(const QString &text);
QString defaultText();
// Whether some line of text makes a source (otherwise the defaults would be watched).
bool hasUsableLine(const QString &text);
// Every non-blank line, and what it became: the same sources as sources() builds from text.
QList<LineReading> readLines(const QString &text, const QHash<QString, SourceKind> &kinds);

} // namespace SourceRegistry

// The sources the last text asked for made, made again only when the text, the known page
// kinds or the options change; the same for the hosts whose page kind a pass may look for. A
// pass asks at its start and after each probe, and most read the same lines as the one before;
// the lists each gets are shared, not copied.
class SourceListCache {
public:
    QList<JSONSource> sources(const QString &text, const QHash<QString, SourceKind> &kinds,
                              const SourceOptions &options);
    QStringList baseHosts(const QString &text);

private:
    struct Key {
        QString text;
        QHash<QString, SourceKind> kinds;
        SourceOptions options;

        bool operator==(const Key &) const = default;
    };
    std::optional<Key> m_key;
    QList<JSONSource> m_sources;
    std::optional<QString> m_hostsText;
    QStringList m_baseHosts;
};

} // namespace lanternic
