#include "store/notificationrules.h"

#include "config/appsettings.h"
#include "model/settingskeys.h"
#include "store/silencestore.h"
#include "store/storedjson.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

constexpr std::pair<NotifyRule, QLatin1StringView> ruleWords[] = {
    {NotifyRule::all, "all"_L1},
    {NotifyRule::outagesOnly, "down"_L1},
    {NotifyRule::never, "none"_L1}};

} // namespace

bool QuietHours::contains(const QTime &time) const
{
    if (!enabled || start == end)
        return false;
    return start < end ? start <= time && time < end : time >= start || time < end;
}

NotificationRules::NotificationRules(QSettings &defaults, QObject *parent)
    : QObject(parent), m_defaults(defaults)
{
    load();
}

void NotificationRules::reload()
{
    const Entries entries = m_entries;
    const QuietHours hours = m_quietHours;
    const QDateTime paused = m_pausedUntil;
    load();
    if (entries != m_entries || hours != m_quietHours || paused != m_pausedUntil)
        Q_EMIT changed();
}

void NotificationRules::load()
{
    m_entries.clear();
    const QVariant stored = m_defaults.value(SettingsKeys::notificationRules);
    if (stored.typeId() == QMetaType::QByteArray)
        m_entries = decode(stored.toByteArray()).value_or(Entries());
    m_quietHours.enabled = SettingsKeys::read(m_defaults, SettingsKeys::quietHours);
    m_quietHours.start = SettingsKeys::read(m_defaults, SettingsKeys::quietHoursStart);
    m_quietHours.end = SettingsKeys::read(m_defaults, SettingsKeys::quietHoursEnd);
    m_pausedUntil = QDateTime::fromString(
        m_defaults.value(SettingsKeys::notificationsPausedUntil).toString(), Qt::ISODate);
}

QByteArray NotificationRules::encode(const Entries &entries)
{
    QStringList ids = entries.keys();
    ids.sort();
    QByteArray out = "{";
    for (const QString &id : ids) {
        if (out.size() > 1)
            out += ',';
        appendJsonString(out, id);
        out += ':';
        for (const auto &[rule, word] : ruleWords) {
            if (rule == entries[id])
                appendJsonString(out, QString(word));
        }
    }
    out += '}';
    return out;
}

std::optional<NotificationRules::Entries> NotificationRules::decode(const QByteArray &data)
{
    const QJsonDocument document = QJsonDocument::fromJson(data);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject root = document.object();
    Entries entries;
    for (auto it = root.begin(); it != root.end(); ++it) {
        const QString word = it.value().toString();
        const auto known = std::find_if(std::begin(ruleWords), std::end(ruleWords),
                                        [&](const auto &pair) { return pair.second == word; });
        if (known == std::end(ruleWords))
            return std::nullopt;
        if (known->first != NotifyRule::all)
            entries.insert(it.key(), known->first);
    }
    return entries;
}

void NotificationRules::replaceEntries(Entries entries)
{
    if (entries == m_entries)
        return;
    m_entries = std::move(entries);
    m_defaults.setValue(SettingsKeys::notificationRules, encode(m_entries));
    Q_EMIT changed();
}

void NotificationRules::setRule(const QString &id, NotifyRule rule)
{
    Entries entries = m_entries;
    if (rule == NotifyRule::all)
        entries.remove(id);
    else
        entries.insert(id, rule);
    replaceEntries(std::move(entries));
}

void NotificationRules::rekey(const QList<std::pair<QString, QString>> &sources)
{
    if (auto entries = rekeyed(m_entries, sources))
        replaceEntries(std::move(*entries));
}

void NotificationRules::setQuietHours(const QuietHours &hours)
{
    if (hours == m_quietHours)
        return;
    m_quietHours = hours;
    m_defaults.setValue(SettingsKeys::quietHours, hours.enabled);
    m_defaults.setValue(SettingsKeys::quietHoursStart, hours.start.toString(u"HH:mm"_s));
    m_defaults.setValue(SettingsKeys::quietHoursEnd, hours.end.toString(u"HH:mm"_s));
    Q_EMIT changed();
}

void NotificationRules::pauseUntil(const QDateTime &until)
{
    m_pausedUntil = until.toUTC();
    if (until.isValid())
        m_defaults.setValue(SettingsKeys::notificationsPausedUntil,
                            m_pausedUntil.toString(Qt::ISODate));
    else
        m_defaults.remove(SettingsKeys::notificationsPausedUntil);
    Q_EMIT changed();
}

bool NotificationRules::isMuted(const QDateTime &now) const
{
    return isPaused(now) || m_quietHours.contains(now.toLocalTime().time());
}

} // namespace lanternic
