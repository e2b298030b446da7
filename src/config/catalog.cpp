#include "config/catalog.h"

#include <QFile>
#include <QUrl>
#include <algorithm>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

QString hostOf(const QString &url)
{
    return QUrl(url).host();
}

} // namespace

QString CatalogEntry::sourceLine() const
{
    const QUrl page(url);
    QString value = page.host() + (page.path() == "/"_L1 ? QString() : page.path());
    if (platform == "feed"_L1)
        value = url;
    else if (platform == "google"_L1)
        value = url + (url.endsWith(u'/') ? ""_L1 : "/"_L1) + "incidents.json"_L1;
    else if (platform == "slack"_L1)
        value = u"https://"_s + page.host() + u"/api/v2.0.0/current"_s;
    // "=" ends the label in a source line.
    QString label = name;
    label.replace(u'=', u'-');
    return label + u'=' + value;
}

std::optional<std::pair<QString, SourceKind>> CatalogEntry::knownKind() const
{
    if (const auto kind = Platforms::kindFromCatalogName(platform))
        return std::pair{hostOf(url).toLower(), *kind};
    return std::nullopt;
}

const Catalog &Catalog::builtIn()
{
    static const Catalog catalog = [] {
        QFile file(u":/lanternic/status-pages.tsv"_s);
        return file.open(QIODevice::ReadOnly) ? fromTsv(file.readAll()) : Catalog();
    }();
    return catalog;
}

Catalog Catalog::fromTsv(const QByteArray &data)
{
    Catalog catalog;
    const QList<QByteArray> lines = data.split('\n');
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QList<QByteArray> fields = lines[i].trimmed().split('\t');
        if (fields.size() < 3 || fields[0].isEmpty() ||
            hostOf(QString::fromUtf8(fields[1])).isEmpty())
            continue;
        CatalogEntry entry{QString::fromUtf8(fields[0]), QString::fromUtf8(fields[1]),
                           QString::fromUtf8(fields[2])};
        catalog.m_names.append(entry.name.toLower());
        catalog.m_hosts.append(hostOf(entry.url).toLower());
        catalog.m_entries.append(std::move(entry));
    }
    return catalog;
}

QList<CatalogEntry> Catalog::search(const QStringList &words) const
{
    QStringList wanted;
    for (const QString &word : words) {
        if (!word.trimmed().isEmpty())
            wanted.append(word.trimmed().toLower());
    }
    struct Match {
        int score;
        qsizetype index;
    };
    QList<Match> matches;
    matches.reserve(m_entries.size());
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        const QString &name = m_names[i];
        int score = 0;
        bool all = true;
        for (const QString &word : std::as_const(wanted)) {
            if (name.startsWith(word))
                continue;
            const qsizetype at = name.indexOf(word);
            if (at > 0 && !name.at(at - 1).isLetterOrNumber())
                score += 1;
            else if (at > 0)
                score += 2;
            else if (m_hosts[i].contains(word))
                score += 3;
            else {
                all = false;
                break;
            }
        }
        if (all)
            matches.append({score, i});
    }
    std::stable_sort(matches.begin(), matches.end(), [this](const Match &a, const Match &b) {
        if (a.score != b.score)
            return a.score < b.score;
        return m_names[a.index] < m_names[b.index];
    });
    QList<CatalogEntry> found;
    found.reserve(matches.size());
    for (const Match &match : std::as_const(matches))
        found.append(m_entries[match.index]);
    return found;
}

QString Catalog::notices()
{
    QFile file(u":/lanternic/NOTICE"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace lanternic
