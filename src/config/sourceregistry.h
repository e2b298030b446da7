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

    static std::optional<Target> classify(const QString &value);
};

struct SourceEntry {
    QString label;
    QString value;
};

// What one non-blank line of the sources text became, or why it is ignored.
struct LineReading {
    int line = 0; // from 1
    QString label;
    std::optional<JSONSource> source;
    QString kind;   // "feed", "Statuspage", …, "to be probed"; with a source
    QString reason; // "no “=”", "no label", "no address", "no host"; without one
    int sameAs = 0; // the earlier line with the same feed address, or 0
};

// What every source takes from the settings, beside what its own line says.
struct SourceOptions {
    // Statuspage's "under_maintenance" reads as operational on every source.
    bool treatMaintenanceAsOperational = false;
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
// "line 3: GitHub → https://…/api/v2/summary.json (Statuspage)", "line 4: ignored — no host".
QString describe(const LineReading &reading);

} // namespace SourceRegistry

} // namespace lanternic
