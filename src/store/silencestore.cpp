#include "store/silencestore.h"

#include "model/settingskeys.h"
#include "store/storedjson.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QSettings>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(SilenceStore)
};

} // namespace

QString label(SilenceDuration duration)
{
    switch (duration) {
    case SilenceDuration::twoHours:
        return Text::tr("For 2 hours");
    case SilenceDuration::oneDay:
        return Text::tr("For 1 day");
    case SilenceDuration::twoDays:
        return Text::tr("For 2 days");
    case SilenceDuration::oneWeek:
        return Text::tr("For 1 week");
    case SilenceDuration::untilResolved:
        return Text::tr("Until resolved");
    case SilenceDuration::forever:
        break;
    }
    return Text::tr("Forever");
}

SilenceUntil expiry(SilenceDuration duration, const QDateTime &now)
{
    switch (duration) {
    case SilenceDuration::twoHours:
        return SilenceUntil::until(now.addSecs(7200));
    case SilenceDuration::oneDay:
        return SilenceUntil::until(now.addSecs(86400));
    case SilenceDuration::twoDays:
        return SilenceUntil::until(now.addSecs(172800));
    case SilenceDuration::oneWeek:
        return SilenceUntil::until(now.addSecs(604800));
    case SilenceDuration::untilResolved:
        return SilenceUntil::resolved();
    case SilenceDuration::forever:
        break;
    }
    return SilenceUntil::forever();
}

SilenceStore::SilenceStore(QSettings &defaults, QObject *parent)
    : QObject(parent), m_defaults(defaults)
{
    const QVariant stored = defaults.value(SettingsKeys::silences);
    std::optional<Entries> decoded;
    if (stored.typeId() == QMetaType::QByteArray)
        decoded = decode(stored.toByteArray());
    m_entries = decoded.value_or(Entries());
    m_storedUnreadable = stored.isValid() && !decoded;
}

QByteArray SilenceStore::encode(const Entries &entries)
{
    QStringList ids = entries.keys();
    ids.sort();
    QByteArray out = "{";
    for (const QString &id : ids) {
        if (out.size() > 1)
            out += ',';
        appendJsonString(out, id);
        const SilenceUntil &until = entries[id];
        switch (until.kind) {
        case SilenceUntil::Kind::date:
            out += ":{\"date\":{\"_0\":";
            appendJsonNumber(out, referenceSeconds(until.date));
            out += "}}";
            break;
        case SilenceUntil::Kind::resolved:
            out += ":{\"resolved\":{}}";
            break;
        case SilenceUntil::Kind::forever:
            out += ":{\"forever\":{}}";
            break;
        }
    }
    out += '}';
    return out;
}

std::optional<SilenceStore::Entries> SilenceStore::decode(const QByteArray &data)
{
    const QJsonDocument document = QJsonDocument::fromJson(data);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject root = document.object();
    Entries entries;
    for (auto it = root.begin(); it != root.end(); ++it) {
        const QJsonObject value = it.value().toObject();
        if (!it.value().isObject())
            return std::nullopt;
        // Exactly one case key; unknown keys do not count.
        const int cases = int(value.contains("date"_L1)) + int(value.contains("resolved"_L1)) +
                          int(value.contains("forever"_L1));
        if (cases != 1)
            return std::nullopt;
        if (value.contains("date"_L1)) {
            const QJsonValue seconds = value.value("date"_L1).toObject().value("_0"_L1);
            if (!seconds.isDouble())
                return std::nullopt;
            entries.insert(it.key(), SilenceUntil::until(fromReferenceSeconds(seconds.toDouble())));
        } else {
            const bool resolved = value.contains("resolved"_L1);
            if (!value.value(resolved ? "resolved"_L1 : "forever"_L1).isObject())
                return std::nullopt;
            entries.insert(it.key(), resolved ? SilenceUntil::resolved() : SilenceUntil::forever());
        }
    }
    return entries;
}

void SilenceStore::save()
{
    m_defaults.setValue(SettingsKeys::silences, encode(m_entries));
}

void SilenceStore::replaceEntries(Entries entries)
{
    const bool changed = entries != m_entries;
    m_entries = std::move(entries);
    save();
    if (changed)
        Q_EMIT entriesChanged();
}

void SilenceStore::silence(const QString &id, SilenceDuration duration, const QDateTime &now)
{
    Entries entries = m_entries;
    entries.insert(id, expiry(duration, now));
    replaceEntries(std::move(entries));
}

void SilenceStore::silenceUntil(const QString &id, const QDateTime &until)
{
    Entries entries = m_entries;
    entries.insert(id, SilenceUntil::until(until));
    replaceEntries(std::move(entries));
}

void SilenceStore::unsilence(const QString &id)
{
    Entries entries = m_entries;
    entries.remove(id);
    replaceEntries(std::move(entries));
}

bool SilenceStore::isSilenced(const QString &id, const QDateTime &now) const
{
    const auto entry = m_entries.constFind(id);
    if (entry == m_entries.constEnd())
        return false;
    return entry->kind != SilenceUntil::Kind::date || entry->date > now;
}

void SilenceStore::prune(const QSet<QString> &troubleIds, const QSet<QString> &unreadSources,
                         const QDateTime &now)
{
    Entries kept;
    for (auto it = m_entries.constBegin(); it != m_entries.constEnd(); ++it) {
        const SilenceUntil &until = it.value();
        const qsizetype separator = it.key().indexOf("::"_L1);
        const bool unread = separator > 0 && unreadSources.contains(it.key().first(separator));
        const bool over = (until.kind == SilenceUntil::Kind::date && until.date <= now) ||
                          (until.kind == SilenceUntil::Kind::resolved && !unread &&
                           !troubleIds.contains(it.key()));
        if (!over)
            kept.insert(it.key(), until);
    }
    if (kept.size() != m_entries.size()) {
        replaceEntries(std::move(kept));
    } else if (m_storedUnreadable) {
        // Garbage found at start is replaced once, as the history is on every pass.
        m_defaults.setValue(SettingsKeys::silences, encode(m_entries));
    }
    m_storedUnreadable = false;
}

QHash<QString, QString> movedIds(const QList<QString> &keys,
                                 const QList<std::pair<QString, QString>> &sources)
{
    QHash<QString, QString> idByHost;
    QSet<QString> ids;
    for (const auto &[id, host] : sources) {
        if (!idByHost.contains(host))
            idByHost.insert(host, id);
        ids.insert(id);
    }
    QHash<QString, QString> moved;
    for (const QString &key : keys) {
        QStringList parts = key.split("::"_L1);
        const QString head = parts.first();
        const qsizetype dash = head.lastIndexOf(u'-');
        const QStringView suffix = dash < 0 ? QStringView() : QStringView(head).sliced(dash + 1);
        const bool numbered = !suffix.isEmpty() && std::all_of(suffix.begin(), suffix.end(),
                                                               [](QChar c) { return c.isDigit(); });
        const auto source = numbered ? idByHost.constFind(head.left(dash)) : idByHost.constEnd();
        if (ids.contains(head) || source == idByHost.constEnd())
            continue;
        parts.first() = *source;
        moved.insert(key, parts.join("::"_L1));
    }
    return moved;
}

void SilenceStore::rekey(const QList<std::pair<QString, QString>> &sources)
{
    if (auto entries = rekeyed(m_entries, sources))
        replaceEntries(std::move(*entries));
}

} // namespace lanternic
