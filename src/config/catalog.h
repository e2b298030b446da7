#pragma once

#include "sources/readers/platforms.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace lanternic {

// One public status page of the catalogue shipped with the program.
struct CatalogEntry {
    QString name;
    QString url;      // the page's address as listed
    QString platform; // "statuspage", "incidentio", …, "feed" (url is the feed), or "unknown"

    bool operator==(const CatalogEntry &) const = default;

    // The source line that watches it: "Name=host", or the document's address where the
    // platform publishes it elsewhere (Google, Slack) or the entry is a feed.
    QString sourceLine() const;
    // The page kind to remember for its host, so that adding it needs no probe.
    std::optional<std::pair<QString, SourceKind>> knownKind() const;
};

// The catalogue of public status pages (data/catalog/status-pages.tsv, built in).
class Catalog {
public:
    // The built-in catalogue, read once.
    static const Catalog &builtIn();
    // Tab-separated lines with a header line: name, url, platform and more columns.
    static Catalog fromTsv(const QByteArray &data);

    const QList<CatalogEntry> &entries() const { return m_entries; }

    // The entries whose name or host holds every word, best first: a name that starts with
    // the words, then a word of the name that does, then names and hosts that hold them.
    // Every entry, by name, for no words.
    QList<CatalogEntry> search(const QStringList &words) const;

    // The licence notices the catalogue's lists ask to be shipped with it.
    static QString notices();

private:
    QList<CatalogEntry> m_entries;
    QList<QString> m_names; // lower case, as searched
    QList<QString> m_hosts;
};

} // namespace lanternic
