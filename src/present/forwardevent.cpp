#include "present/forwardevent.h"

#include "model/feedtext.h"
#include "present/changenotice.h"
#include "present/resultjson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMessageAuthenticationCode>
#include <algorithm>

namespace lanternic::ForwardEvent {

using namespace Qt::StringLiterals;
using namespace ChangeNews;

namespace {

// Header values are bytes; ntfy decodes RFC 2047 encoded words, so text beyond ASCII goes
// as one. Feed text is cleaned first: no line break can end the header early.
QByteArray headerText(const QString &text)
{
    const QString clean = FeedText::clean(text, 250);
    const bool ascii = std::all_of(clean.cbegin(), clean.cend(), [](QChar c) {
        return c.unicode() >= 0x20 && c.unicode() < 0x7f;
    });
    if (ascii)
        return clean.toLatin1();
    return "=?UTF-8?B?" + clean.toUtf8().toBase64() + "?=";
}

// ntfy's tags that are emoji shortcodes show as the emoji before the title.
QByteArray tagFor(const Event &event)
{
    if (event.news)
        return "loudspeaker";
    switch (event.to) {
    case Health::down:
        return "rotating_light";
    case Health::degraded:
        return "warning";
    case Health::operational:
        return "white_check_mark";
    case Health::unknown:
        break;
    }
    return "grey_question";
}

QByteArray priorityFor(const Event &event)
{
    if (event.news)
        return "3";
    return event.to == Health::down ? "5" : event.to == Health::degraded ? "4" : "3";
}

} // namespace

QList<Event> ofNews(const News &news, const QDateTime &at)
{
    QList<Event> events;
    for (const Change &change : news.changes) {
        const Watched &item = *change.watched;
        events.append({item.sourceId, item.sourceName, urlOf(item.page), change.from, item.health,
                       ChangeNotice::headline(item), ChangeNotice::changeLine(item), item.incidents,
                       at});
    }
    for (const OpenIncident *opened : news.opened) {
        events.append({opened->sourceId,
                       opened->sourceName,
                       urlOf(opened->page),
                       Health::operational,
                       Health::operational,
                       ChangeNotice::openedLine(*opened),
                       ChangeNotice::incidentLine(opened->incident),
                       {opened->incident},
                       at,
                       true});
    }
    return events;
}

QList<Event> afterQuiet(const QList<QuietChange> &changes, const Snapshot &now, const QDateTime &at)
{
    QList<Event> events;
    for (const QuietChange &change : changes) {
        const auto item = std::find_if(now.items.cbegin(), now.items.cend(), [&](const Watched &w) {
            return w.sourceId == change.sourceId;
        });
        const bool known = item != now.items.cend();
        const QString text = ChangeNotice::quietText(change);
        events.append({change.sourceId, change.name, known ? urlOf(item->page) : std::nullopt,
                       change.from, change.to, text, text,
                       known ? item->incidents : QList<IncidentMention>{}, at});
    }
    return events;
}

Request ntfy(const Event &event)
{
    QStringList lines;
    if (event.detail != event.title)
        lines.append(event.detail);
    for (const IncidentMention &incident : event.incidents) {
        const QString line = ChangeNotice::incidentLine(incident);
        if (line != event.detail)
            lines.append(line);
    }
    if (lines.isEmpty())
        lines.append(event.title);
    // ntfy turns a message over 4,096 bytes into an attachment: whole lines up to that.
    QByteArray body;
    for (const QString &line : lines) {
        const QByteArray text = FeedText::clean(line, 1000).toUtf8();
        if (!body.isEmpty() && body.size() + 1 + text.size() > 4096)
            break;
        body += (body.isEmpty() ? "" : "\n") + text;
    }
    Request request{body,
                    {{"Content-Type", "text/plain; charset=utf-8"},
                     {"Title", headerText(event.title)},
                     {"Priority", priorityFor(event)},
                     {"Tags", tagFor(event)}}};
    if (event.page && (event.page->scheme() == "https"_L1 || event.page->scheme() == "http"_L1))
        request.headers.append({"Click", event.page->toEncoded()});
    return request;
}

Request webhook(const Event &event)
{
    QJsonArray incidents;
    for (const IncidentMention &incident : event.incidents)
        incidents.append(QJsonObject{{u"stage"_s, incident.stage}, {u"name"_s, incident.name}});
    const QJsonObject source{{u"id"_s, event.sourceId},
                             {u"name"_s, event.sourceName},
                             {u"url"_s, urlOrNull(event.page)}};
    const QJsonObject document{{u"schema"_s, u"lanternic.event.v1"_s},
                               {u"source"_s, source},
                               {u"from"_s, rawValue(event.from)},
                               {u"to"_s, rawValue(event.to)},
                               {u"detail"_s, event.detail},
                               {u"incidents"_s, incidents},
                               {u"at"_s, isoTimestamp(event.at)}};
    return {QJsonDocument(document).toJson(QJsonDocument::Compact),
            {{"Content-Type", "application/json"}}};
}

QByteArray signature(const QByteArray &body, const QByteArray &secret)
{
    return "sha256=" +
           QMessageAuthenticationCode::hash(body, secret, QCryptographicHash::Sha256).toHex();
}

} // namespace lanternic::ForwardEvent
