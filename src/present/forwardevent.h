#pragma once

#include "store/changenews.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QUrl>
#include <optional>

namespace lanternic {

// The news of a pass as events the watcher forwards to other tools: one per change of health,
// per incident that opened, or per source that changed over a quiet spell, worded as the
// notifications word them.
namespace ForwardEvent {

struct Event {
    QString sourceId;
    QString sourceName;
    std::optional<QUrl> page;
    Health from;
    Health to;
    QString title;  // "GitHub is down"
    QString detail; // what changed, as a line: "Git Operations — down"
    QList<ChangeNews::IncidentMention> incidents;
    QDateTime at;
    bool news = false; // an incident opened; nothing changed its health

    bool operator==(const Event &) const = default;
};

QList<Event> ofNews(const ChangeNews::News &news, const QDateTime &at);
// The changes over a quiet spell, as it ends; now is the snapshot it ends with.
QList<Event> afterQuiet(const QList<ChangeNews::QuietChange> &changes,
                        const ChangeNews::Snapshot &now, const QDateTime &at);

using Headers = QList<std::pair<QByteArray, QByteArray>>;
struct Request {
    QByteArray body;
    Headers headers;
};

// A message for ntfy's publishing API: the text as body, and Title, Priority (5 down,
// 4 degraded, 3 otherwise), Tags and Click (the status page) as headers.
Request ntfy(const Event &event);
// The event as a "lanternic.event.v1" JSON document.
Request webhook(const Event &event);
// "sha256=" and the hex HMAC-SHA256 of body under secret.
QByteArray signature(const QByteArray &body, const QByteArray &secret);

} // namespace ForwardEvent

} // namespace lanternic
