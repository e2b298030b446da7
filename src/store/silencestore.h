#pragma once

#include "model/sourceresult.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QString>
#include <array>
#include <functional>
#include <optional>

class QSettings;

namespace lanternic {

// How long one silence lasts.
struct SilenceUntil {
    enum class Kind { date, resolved, forever };
    Kind kind = Kind::forever;
    QDateTime date; // only for Kind::date

    static SilenceUntil until(const QDateTime &date) { return {Kind::date, date}; }
    static SilenceUntil resolved() { return {Kind::resolved, {}}; }
    static SilenceUntil forever() { return {Kind::forever, {}}; }

    bool operator==(const SilenceUntil &other) const
    {
        return kind == other.kind && (kind != Kind::date || date == other.date);
    }
};

// The choices the silence menu offers, in menu order.
enum class SilenceDuration { twoHours, oneDay, twoDays, oneWeek, untilResolved, forever };

inline constexpr std::array<SilenceDuration, 6> allSilenceDurations{
    SilenceDuration::twoHours, SilenceDuration::oneDay,        SilenceDuration::twoDays,
    SilenceDuration::oneWeek,  SilenceDuration::untilResolved, SilenceDuration::forever};

// Fixed numbers of seconds, whatever the calendar says.
SilenceUntil expiry(SilenceDuration duration, const QDateTime &now);

// Ids kept under older forms of source ids ("host-2", "host-2::component") and the current
// ids they move to. sources holds (source id, host of its feed URL) in list order.
QHash<QString, QString> movedIds(const QList<QString> &keys,
                                 const QList<std::pair<QString, QString>> &sources);

// Entries by id with the moved ones under their current ids; nothing when none moved.
template<typename Value>
std::optional<QHash<QString, Value>> rekeyed(const QHash<QString, Value> &entries,
                                             const QList<std::pair<QString, QString>> &sources)
{
    const QHash<QString, QString> moved = movedIds(entries.keys(), sources);
    if (moved.isEmpty())
        return std::nullopt;
    QHash<QString, Value> result;
    for (auto it = entries.constBegin(); it != entries.constEnd(); ++it)
        result.insert(moved.value(it.key(), it.key()), it.value());
    return result;
}

// One line of the list of silenced things.
struct SilencedItem {
    QString id;
    QString title;
    SilenceUntil until;

    bool operator==(const SilencedItem &) const = default;
};

// Silences per source or component id, saved to the settings after every change.
class SilenceStore : public QObject {
    Q_OBJECT

public:
    using Entries = QHash<QString, SilenceUntil>;

    explicit SilenceStore(QSettings &defaults, QObject *parent = nullptr);

    const Entries &entries() const { return m_entries; }

    void silence(const QString &id, SilenceDuration duration, const QDateTime &now);
    // A dated silence of any length, as a notification's "Silence for 1 hour" gives.
    void silenceUntil(const QString &id, const QDateTime &until);
    void unsilence(const QString &id);
    bool isSilenced(const QString &id, const QDateTime &now) const;
    // A component's: its id is spelt out only when something is silenced.
    bool isSilenced(const ComponentId &id, const QDateTime &now) const
    {
        return !m_entries.isEmpty() && isSilenced(id.toString(), now);
    }

    // End-of-pass clean-up: dated silences that ran out, and "until resolved" silences
    // whose id is no longer in trouble, go. The components of unreadSources (whose check
    // failed, so that nothing is known of them) keep their "until resolved" silences.
    void prune(const QSet<QString> &troubleIds, const QSet<QString> &unreadSources,
               const QDateTime &now);

    // Moves entries kept under older forms of source ids to the current ids.
    void rekey(const QList<std::pair<QString, QString>> &sources);

    // Makes the entries that differ between before and after so in the stored ones too: how
    // a run on a copy of the settings hands back what it changed.
    void apply(const Entries &before, const Entries &after);

    // The stored document, and back; nothing for a document that does not decode.
    static QByteArray encode(const Entries &entries);
    static std::optional<Entries> decode(const QByteArray &data);

Q_SIGNALS:
    void entriesChanged();

private:
    // Edits the stored entries as they are now, re-read under the settings file's lock, so
    // that what another program on the same file silenced meanwhile stays; edit says whether
    // it changed anything, and only then is the result written.
    void change(const std::function<bool(Entries &)> &edit);
    std::optional<Entries> stored() const;

    QSettings &m_defaults;
    Entries m_entries;
    bool m_storedUnreadable = false; // a stored value was there but could not be read
};

} // namespace lanternic
