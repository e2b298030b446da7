#include "config/sourceregistry.h"

#include "config/appsettings.h"
#include "model/urls.h"

#include <QSet>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

struct KnownService {
    QString key;
    QString host;
    QSet<QString> treatAsOperational;
    std::optional<QSet<QString>> includeGroups;
};

const QList<KnownService> &knownServices()
{
    static const QList<KnownService> services{
        {u"github"_s, u"www.githubstatus.com"_s, {}, std::nullopt},
        {u"cloudflare"_s,
         u"www.cloudflarestatus.com"_s,
         {u"under_maintenance"_s},
         QSet<QString>{u"Cloudflare Sites and Services"_s}},
        {u"datadog"_s, u"status.datadoghq.com"_s, {}, std::nullopt},
        {u"openai"_s, u"status.openai.com"_s, {}, std::nullopt},
        {u"claude"_s, u"status.claude.com"_s, {}, std::nullopt},
    };
    return services;
}

const QList<SourceEntry> &defaultEntries()
{
    static const QList<SourceEntry> entries{
        {u"AWS (via Updog)"_s, "https://"_L1 + SourceRegistry::updogHost + "/status/amazonaws"_L1},
        {u"Claude"_s, u"status.claude.com"_s},
        {u"Cloudflare"_s, u"www.cloudflarestatus.com"_s},
        {u"Datadog EU"_s, u"status.datadoghq.eu"_s},
        {u"GitHub"_s, u"www.githubstatus.com"_s},
        {u"Linear"_s, u"linearstatus.com"_s},
        {u"OpenAI"_s, u"status.openai.com"_s},
    };
    return entries;
}

const KnownService *knownService(const QString &host)
{
    for (const KnownService &service : knownServices()) {
        if (service.host == host)
            return &service;
    }
    return nullptr;
}

bool isLineBreak(QChar c)
{
    switch (c.unicode()) {
    case 0x0A:
    case 0x0B:
    case 0x0C:
    case 0x0D:
    case 0x85:
    case 0x2028:
    case 0x2029:
        return true;
    default:
        return false;
    }
}

// The scheme a value begins with, "ftp" in "ftp://host", when it is neither http nor https:
// such a line names something no check can fetch, and is not read as a host.
std::optional<QString> foreignScheme(const QString &value)
{
    // Most values are bare hosts: a colon is looked for first, which is quick.
    const qsizetype end = value.indexOf(u':');
    if (end <= 0 || !QStringView(value).sliced(end).startsWith(u"://"))
        return std::nullopt;
    const QStringView scheme = QStringView(value).first(end);
    const auto isSchemeChar = [](QChar c) {
        return c.unicode() < 128 && (c.isLetterOrNumber() || c == u'+' || c == u'-' || c == u'.');
    };
    if (!scheme.front().isLetter() || !std::all_of(scheme.begin(), scheme.end(), isSchemeChar))
        return std::nullopt;
    const QString lower = scheme.toString().toLower();
    if (lower == "http"_L1 || lower == "https"_L1)
        return std::nullopt;
    return lower;
}

// A path that names a document rather than a page: JSON, XML, or an RSS or Atom feed.
bool isDocumentAddress(QStringView tail)
{
    for (const QLatin1StringView end : {".json"_L1, ".xml"_L1, ".rss"_L1, ".atom"_L1})
        if (tail.endsWith(end))
            return true;
    while (tail.endsWith(u'/'))
        tail.chop(1);
    return tail.endsWith("/feed"_L1) || tail.endsWith("/rss"_L1);
}

// Letters, digits, dots and hyphens from a letter or digit on, "status.example.com", as most
// lines are: nothing in it but a host.
bool isBareHost(QStringView value)
{
    const auto hostChar = [](QChar c) {
        return c.unicode() < 128 && (c.isLetterOrNumber() || c == u'.' || c == u'-');
    };
    return !value.isEmpty() && value.front().isLetterOrNumber() &&
           std::all_of(value.begin(), value.end(), hostChar);
}

// The https address of a bare host, made from its parts: Qt checks the host as parsing
// "https://" and the host would, for about half the work.
std::optional<QUrl> hostUrl(const QString &host)
{
    static const QUrl https = [] {
        QUrl url;
        url.setScheme(u"https"_s);
        return url;
    }();
    QUrl url = https;
    url.setHost(host, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return url;
}

// The host as the user wrote it, from what follows the scheme's "//": parsing lower-cases it,
// but ids and lookups keep the case. The parsed host is shared when it is the same text.
QString hostAsWritten(QStringView afterScheme, const QString &parsed)
{
    QStringView authority = afterScheme;
    qsizetype end = 0;
    qsizetype afterAt = 0;
    for (; end < authority.size(); ++end) {
        const QChar c = authority[end];
        if (c == u'/' || c == u'?' || c == u'#')
            break;
        if (c == u'@')
            afterAt = end + 1;
    }
    authority = authority.sliced(afterAt, end - afterAt);
    if (authority.startsWith(u'[')) {
        const qsizetype close = authority.indexOf(u']');
        authority = authority.sliced(1, close < 0 ? authority.size() - 1 : close - 1);
    } else if (const qsizetype colon = authority.indexOf(u':'); colon >= 0) {
        authority.truncate(colon);
    }
    return authority == parsed ? parsed : authority.toString();
}

QString withPort(const QString &host, const QUrl &url)
{
    return url.port() < 0 ? host : host + u':' + QString::number(url.port());
}

QString urlKey(const QUrl &url, const QString &host, bool withPath)
{
    if (url.host().isEmpty())
        return url.toString();
    QString key = withPort(host, url);
    if (withPath) {
        QString path = url.path();
        if (path.endsWith(u'/'))
            path.chop(1);
        key += path;
    }
    return key;
}

// The Updog outage service's own host, or one below it (host as a URL gives it: lower case).
bool isUpdogHost(const QString &host)
{
    const QString &updog = SourceRegistry::updogHost;
    return host.endsWith(updog) &&
           (host.size() == updog.size() || host[host.size() - updog.size() - 1] == u'.');
}

Target::Updog updogTarget(const QUrl &url)
{
    const QStringList pieces = url.path().split(u'/', Qt::SkipEmptyParts);
    Target::Updog target{std::nullopt, std::nullopt, url};
    if (pieces.size() < 2 || pieces.first() != "status"_L1)
        return target;
    target.provider = pieces[1];
    if (pieces.size() >= 4 && pieces[2] == "services"_L1)
        target.service = pieces[3];
    return target;
}

// Hands out ids: a key already taken gets "-2", "-3", … Each key remembers where its count
// stands, so a list that repeats one line thousands of times costs no more than a varied one.
class SourceIds {
public:
    explicit SourceIds(qsizetype expected) { m_taken.reserve(expected); }

    QString claim(const QString &key)
    {
        if (take(key))
            return key;
        int &n = m_next[key];
        n = std::max(n, 2);
        QString id;
        while (!take(id = key + u'-' + QString::number(n)))
            ++n;
        return id;
    }

private:
    // Whether the id was free; it is taken now. One lookup, as most ids are free.
    bool take(const QString &id)
    {
        const qsizetype before = m_taken.size();
        m_taken.insert(id);
        return m_taken.size() != before;
    }

    QSet<QString> m_taken;
    QHash<QString, int> m_next;
};

// A source as a value makes it, but for its name and id, the key its id is claimed under, and
// which form of target the value is (the index of its alternative in Target::value).
struct Built {
    JSONSource source;
    QString key;
    std::size_t form = 0;
};

std::optional<Built> buildSource(const Target &target, const QHash<QString, SourceKind> &kinds,
                                 const SourceOptions &options)
{
    Built built;
    built.form = target.value.index();
    JSONSource &source = built.source;
    QString &key = built.key;
    const QString &host = target.writtenHost;
    QString lookupHost;
    if (const auto *endpoint = std::get_if<Target::Endpoint>(&target.value)) {
        source.url = endpoint->url;
        source.homeURL = endpoint->url;
        lookupHost = host;
        key = urlKey(source.homeURL, host, true);
    } else if (const auto *base = std::get_if<Target::Base>(&target.value)) {
        const SourceKind kind = kinds.isEmpty()
                                    ? SourceKind::atlassian
                                    : kinds.value(base->host.toLower(), SourceKind::atlassian);
        const std::optional<QUrl> url =
            base->asIs && kind == SourceKind::atlassian
                ? base->asIs
                : Platforms::of(kind).document({base->host, base->home}, base->subpath);
        if (!url)
            return std::nullopt;
        source.url = *url;
        source.homeURL = base->home;
        source.baseHost = base->host;
        lookupHost = base->host;
        key = base->subpath ? urlKey(source.homeURL, host, true) : base->host;
    } else {
        const auto &updog = std::get<Target::Updog>(target.value);
        source.url =
            QUrl("https://"_L1 + SourceRegistry::updogHost + "/data/third-party-outages.json"_L1);
        source.homeURL = updog.home;
        source.updogProvider = updog.provider;
        source.updogService = updog.service;
        key = urlKey(source.homeURL, host, updog.provider.has_value());
    }

    if (!std::holds_alternative<Target::Updog>(target.value)) {
        if (const KnownService *known = knownService(lookupHost)) {
            key = known->key;
            source.treatAsOperational = known->treatAsOperational;
            source.includeGroups = known->includeGroups;
        }
    }

    if (options.treatMaintenanceAsOperational)
        source.treatAsOperational.insert(u"under_maintenance"_s);
    // Ids keep the host as written, and so must whatever is matched against them.
    const QString urlHost = source.url.host();
    source.urlHost =
        urlHost == host || urlHost.compare(host, Qt::CaseInsensitive) == 0 ? host : urlHost;
    return built;
}

// Hosts in the order first added, each once.
struct HostList {
    QStringList hosts;
    QSet<QString> seen;

    void add(const QString &host)
    {
        if (!seen.contains(host)) {
            seen.insert(host);
            hosts.append(host);
        }
    }
};

// Makes the sources of lines in their order and claims their ids. A value written on several
// lines makes the same source each time but for its name and id: it is made once, then copied.
static_assert(
    std::is_same_v<std::variant_alternative_t<Target::endpointForm, decltype(Target::value)>,
                   Target::Endpoint> &&
    std::is_same_v<std::variant_alternative_t<Target::updogForm, decltype(Target::value)>,
                   Target::Updog>);

class SourceMaker {
public:
    // Room is made for as many values as lines: growing tables of thousands costs more than
    // filling them.
    SourceMaker(const QHash<QString, SourceKind> &kinds, const SourceOptions &options,
                qsizetype lines)
        : m_kinds(kinds), m_options(options), m_ids(lines)
    {
        m_made.reserve(lines);
        m_index.reserve(lines);
        m_sources.reserve(lines);
    }

    // Adds the line's source to the sources made and gives the form of its target; nothing when the
    // value makes no source. A value's first source is kept as made, not copied.
    std::optional<std::size_t> make(const SourceEntry &entry)
    {
        // One lookup: a value seen first gets a slot of 0, and then its place plus one.
        qsizetype &slot = m_index[entry.value];
        if (slot == 0) {
            const std::optional<Target> target = Target::classify(entry.value);
            const auto *base = target ? std::get_if<Target::Base>(&target->value) : nullptr;
            if (m_baseHosts && base)
                m_baseHosts->add(base->host);
            std::optional<Built> built =
                target ? buildSource(*target, m_kinds, m_options) : std::nullopt;
            Made made;
            if (built) {
                made = {m_sources.size(), std::move(built->key), built->form};
                m_sources.append(std::move(built->source));
            }
            m_made.append(std::move(made));
            slot = m_made.size();
            if (!built)
                return std::nullopt;
            m_lastIsFirst = true;
            return named(m_sources.last(), entry.label, m_made.last());
        }
        const Made &made = m_made[slot - 1];
        if (made.first < 0)
            return std::nullopt;
        m_sources.append(JSONSource(m_sources[made.first]));
        m_lastIsFirst = false;
        return named(m_sources.last(), entry.label, made);
    }

    // Every source made, in the order of the lines; the maker is done with them.
    QList<JSONSource> takeSources() { return std::move(m_sources); }
    // The hosts of the bare-host lines, first appearance first, as baseHosts() gives them.
    void collectBaseHosts() { m_baseHosts.emplace(); }
    QStringList takeBaseHosts() { return std::move(m_baseHosts->hosts); }

    // The source make() added last, for a caller that keeps each elsewhere: copied when it is
    // its value's first, which later lines copy, and moved out otherwise.
    JSONSource takeLast() { return m_lastIsFirst ? m_sources.last() : m_sources.takeLast(); }

private:
    // What a value made: where its first source is among those made (-1 for none), the key its
    // ids are claimed under, and the form of its target.
    struct Made {
        qsizetype first = -1;
        QString key;
        std::size_t form = 0;
    };

    std::size_t named(JSONSource &source, const QString &label, const Made &made)
    {
        source.name = label;
        source.id = m_ids.claim(made.key);
        return made.form;
    }

    const QHash<QString, SourceKind> &m_kinds;
    SourceOptions m_options;
    SourceIds m_ids;
    // What each value made, in the order first written, and where (plus one), by value.
    QList<Made> m_made;
    QHash<QString, qsizetype> m_index;
    QList<JSONSource> m_sources;
    bool m_lastIsFirst = false;
    std::optional<HostList> m_baseHosts; // only when asked for
};

QList<JSONSource> buildSources(const QList<SourceEntry> &entries,
                               const QHash<QString, SourceKind> &kinds,
                               const SourceOptions &options, QStringList *baseHosts = nullptr)
{
    SourceMaker maker(kinds, options, entries.size());
    if (baseHosts)
        maker.collectBaseHosts();
    for (const SourceEntry &entry : entries)
        maker.make(entry);
    if (baseHosts)
        *baseHosts = maker.takeBaseHosts();
    return maker.takeSources();
}

// The sources of text, or the defaults when no line makes one; and the hosts of its bare-host
// lines, read on the way.
QList<JSONSource> sourcesOf(const QString &text, const QHash<QString, SourceKind> &kinds,
                            const SourceOptions &options, QStringList *baseHosts = nullptr)
{
    QList<JSONSource> built =
        buildSources(SourceRegistry::entries(text), kinds, options, baseHosts);
    if (built.isEmpty())
        built = buildSources(defaultEntries(), kinds, options);
    return built;
}

} // namespace

std::optional<Target> Target::classify(const QString &value)
{
    // A bare host names no scheme at all.
    const bool bare = isBareHost(value);
    if (!bare && foreignScheme(value))
        return std::nullopt;
    const bool explicitScheme =
        !bare && (value.startsWith("http://"_L1) || value.startsWith("https://"_L1));
    const auto url = bare             ? hostUrl(value)
                     : explicitScheme ? parseUrl(value)
                                      : parseUrl(u"https://"_s + value);
    if (!url)
        return std::nullopt;
    const QString parsedHost = url->host();
    if (parsedHost.isEmpty())
        return std::nullopt;
    const QStringView afterScheme =
        explicitScheme ? QStringView(value).sliced(value.indexOf("//"_L1) + 2) : QStringView(value);
    QString host = hostAsWritten(afterScheme, parsedHost);
    if (isUpdogHost(parsedHost))
        return Target{updogTarget(*url), std::move(host)};

    const qsizetype slash = afterScheme.indexOf(u'/');
    if (slash >= 0) {
        const QString tail = afterScheme.sliced(slash).toString().toLower();
        if (tail.contains(u'?') || tail.contains("/api/"_L1) || isDocumentAddress(tail))
            return Target{Endpoint{*url}, std::move(host)};
    }

    Base base;
    base.host = withPort(host, *url);
    if (slash >= 0) {
        const QString fullPath = url->path();
        QStringView path = fullPath;
        while (path.startsWith(u'/'))
            path = path.sliced(1);
        while (path.endsWith(u'/'))
            path.chop(1);
        if (!path.isEmpty())
            base.subpath = path.toString();
    }
    base.home = *url;
    if (explicitScheme && base.subpath)
        base.asIs = *url;
    return Target{std::move(base), std::move(host)};
}

namespace SourceRegistry {

QList<SourceEntry> entries(const QString &text)
{
    QList<SourceEntry> entries;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !isLineBreak(text[i]))
            continue;
        const QStringView line = trimmedOfBlanks(QStringView(text).sliced(start, i - start));
        start = i + 1;
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0)
            continue;
        const QStringView label = trimmedOfBlanks(line.first(equals));
        const QStringView value = trimmedOfBlanks(line.sliced(equals + 1));
        if (!label.isEmpty() && !value.isEmpty())
            entries.append({label.toString(), value.toString()});
    }
    return entries;
}

QList<JSONSource> sources(const QString &text, const QHash<QString, SourceKind> &kinds,
                          const SourceOptions &options)
{
    return sourcesOf(text, kinds, options);
}

QStringList baseHosts(const QString &text)
{
    HostList hosts;
    for (const SourceEntry &entry : entries(text)) {
        const auto target = Target::classify(entry.value);
        if (const auto *base = target ? std::get_if<Target::Base>(&target->value) : nullptr)
            hosts.add(base->host);
    }
    return hosts.hosts;
}

QString defaultText()
{
    QStringList lines;
    for (const SourceEntry &entry : defaultEntries())
        lines.append(entry.label + u'=' + entry.value);
    return lines.join(u'\n');
}

bool hasUsableLine(const QString &text)
{
    const QList<SourceEntry> all = entries(text);
    return std::any_of(all.begin(), all.end(), [](const SourceEntry &entry) {
        return Target::classify(entry.value).has_value();
    });
}

QList<LineReading> readLines(const QString &text, const QHash<QString, SourceKind> &kinds)
{
    QList<LineReading> readings;
    SourceMaker maker(kinds, {}, text.count(u'\n') + 1);
    QHash<QUrl, int> firstByUrl;
    qsizetype start = 0;
    int number = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !isLineBreak(text[i]))
            continue;
        const QStringView line = trimmedOfBlanks(QStringView(text).sliced(start, i - start));
        start = i + 1;
        ++number;
        if (line.isEmpty())
            continue;
        LineReading reading;
        reading.line = number;
        const qsizetype equals = line.indexOf(u'=');
        const QString label =
            equals < 0 ? QString() : trimmedOfBlanks(line.first(equals)).toString();
        const QString value =
            equals < 0 ? QString() : trimmedOfBlanks(line.sliced(equals + 1)).toString();
        reading.label = label;
        if (equals < 0)
            reading.ignored = LineReading::Ignored::noEquals;
        else if (label.isEmpty())
            reading.ignored = LineReading::Ignored::noLabel;
        else if (value.isEmpty())
            reading.ignored = LineReading::Ignored::noAddress;
        else if (const auto scheme = foreignScheme(value)) {
            reading.ignored = LineReading::Ignored::unsupportedScheme;
            reading.scheme = *scheme;
        } else if (const auto form = maker.make({label, value})) {
            JSONSource source = maker.takeLast();
            if (*form == Target::endpointForm)
                reading.kind = LineReading::Kind::feed;
            else if (*form == Target::updogForm)
                reading.kind = LineReading::Kind::updog;
            else if (auto kind = kinds.constFind(source.baseHost.toLower());
                     kind != kinds.constEnd()) {
                reading.kind = LineReading::Kind::platform;
                reading.platform = *kind;
            } else
                reading.kind = LineReading::Kind::probe;
            reading.sameAs = firstByUrl.value(source.url);
            if (reading.sameAs == 0)
                firstByUrl.insert(source.url, number);
            reading.source = std::move(source);
        } else {
            reading.ignored = LineReading::Ignored::noHost;
        }
        readings.append(std::move(reading));
    }
    return readings;
}

} // namespace SourceRegistry

QList<JSONSource> SourceListCache::sources(const QString &text,
                                           const QHash<QString, SourceKind> &kinds,
                                           const SourceOptions &options)
{
    Key key{text, kinds, options};
    if (key != m_key) {
        // A pass asks for the bare hosts of the same text next: they are read on the way.
        m_sources = sourcesOf(text, kinds, options, &m_baseHosts);
        m_hostsText = text;
        m_key = std::move(key);
    }
    return m_sources;
}

QStringList SourceListCache::baseHosts(const QString &text)
{
    if (text != m_hostsText) {
        m_baseHosts = SourceRegistry::baseHosts(text);
        m_hostsText = text;
    }
    return m_baseHosts;
}

} // namespace lanternic
