#include "store/silencestore.h"

#include "config/settingsfile.h"
#include "model/settingskeys.h"
#include "store/storedjson.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QSettings>

namespace lanternic {

using namespace Qt::StringLiterals;

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
    const std::optional<Entries> decoded = stored();
    m_entries = decoded.value_or(Entries());
    m_storedUnreadable = !decoded;
}

std::optional<SilenceStore::Entries> SilenceStore::stored() const
{
    const QVariant value = m_defaults.value(SettingsKeys::silences);
    if (!value.isValid())
        return Entries();
    if (value.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    return decode(value.toByteArray());
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

void SilenceStore::change(const std::function<bool(Entries &)> &edit)
{
    Entries entries;
    SettingsFile::update(m_defaults, [&] {
        // What cannot be read is replaced by what this store holds, as at the first save.
        const std::optional<Entries> current = stored();
        entries = current.value_or(m_entries);
        if (edit(entries) || m_storedUnreadable)
            m_defaults.setValue(SettingsKeys::silences, encode(entries));
        m_storedUnreadable = false;
    });
    const bool changed = entries != m_entries;
    m_entries = std::move(entries);
    if (changed)
        Q_EMIT entriesChanged();
}

void SilenceStore::silence(const QString &id, SilenceDuration duration, const QDateTime &now)
{
    change([&](Entries &entries) {
        entries.insert(id, expiry(duration, now));
        return true;
    });
}

void SilenceStore::silenceUntil(const QString &id, const QDateTime &until)
{
    change([&](Entries &entries) {
        entries.insert(id, SilenceUntil::until(until));
        return true;
    });
}

void SilenceStore::unsilence(const QString &id)
{
    change([&](Entries &entries) { return entries.remove(id) > 0; });
}

void SilenceStore::apply(const Entries &before, const Entries &after)
{
    change([&](Entries &entries) {
        bool changed = false;
        for (auto it = before.constBegin(); it != before.constEnd(); ++it) {
            if (!after.contains(it.key()))
                changed = entries.remove(it.key()) > 0 || changed;
        }
        for (auto it = after.constBegin(); it != after.constEnd(); ++it) {
            if (before.value(it.key()) != it.value() || !before.contains(it.key())) {
                entries.insert(it.key(), it.value());
                changed = true;
            }
        }
        return changed;
    });
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
    change([&](Entries &entries) {
        return entries.removeIf([&](Entries::iterator entry) {
            const SilenceUntil &until = entry.value();
            const qsizetype separator = entry.key().indexOf("::"_L1);
            const bool unread =
                separator > 0 && unreadSources.contains(entry.key().first(separator));
            return (until.kind == SilenceUntil::Kind::date && until.date <= now) ||
                   (until.kind == SilenceUntil::Kind::resolved && !unread &&
                    !troubleIds.contains(entry.key()));
        }) > 0;
    });
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
    if (!rekeyed(m_entries, sources))
        return;
    change([&](Entries &entries) {
        auto moved = rekeyed(entries, sources);
        if (moved)
            entries = std::move(*moved);
        return moved.has_value();
    });
}

} // namespace lanternic
