#include "sources/readers/newsreader.h"

#include "model/urls.h"
#include "sources/readers/jsondecoder.h"

namespace lanternic::NewsReader {

using namespace Qt::StringLiterals;

namespace {

QString capped(const std::optional<QString> &text)
{
    return text.value_or(QString()).left(maximumTextLength);
}

// A status word, shared when it is a common one.
QString word(const std::optional<QString> &text)
{
    return sharedFeedWord(capped(text));
}

QDateTime instant(const std::optional<QString> &text)
{
    return text ? JsonValues::instant(*text) : QDateTime();
}

// The page's own link for an entry when the entry gives none of its own.
std::optional<WebLink> linkOf(const std::optional<QString> &own, const WebLink &page,
                              const QString &id)
{
    if (own) {
        if (auto link = WebLink::parse(*own))
            return link;
    }
    if (id.isEmpty())
        return std::nullopt;
    QString base = page.toString();
    if (base.isEmpty())
        return std::nullopt;
    while (base.endsWith(u'/'))
        base.chop(1);
    return WebLink::parse(base + "/incidents/"_L1 + QString::fromUtf8(QUrl::toPercentEncoding(id)));
}

// Calls read for each object of the array field, up to the maximum; read gives false for an
// entry it leaves out.
template<typename T, typename Read>
QList<T> entries(const JsonObject &object, QLatin1StringView field, KeyStyle style, Read read)
{
    QList<T> out;
    const JsonArray array = object.value(field).toArray();
    for (const JsonValue &value : array) {
        if (out.size() == maximumEntries)
            break;
        JsonDecoder d(style);
        const JsonObject entry = d.element(value, field);
        T item;
        if (read(d, entry, item) && d.ok())
            out.append(std::move(item));
    }
    return out;
}

bool isOpen(const QString &stage)
{
    return stage != "resolved"_L1 && stage != "postmortem"_L1;
}

} // namespace

QList<Incident> statuspageIncidents(const JsonObject &root, const WebLink &page)
{
    return entries<Incident>(
        root, "incidents"_L1, KeyStyle::fromSnakeCase,
        [&page](JsonDecoder &d, const JsonObject &entry, Incident &incident) {
            incident.id = capped(d.string(entry, "id"_L1));
            incident.name = capped(d.string(entry, "name"_L1));
            incident.stage = word(d.optionalString(entry, "status"_L1));
            incident.impact = word(d.optionalString(entry, "impact"_L1));
            incident.startedAt = instant(d.optionalString(entry, "startedAt"_L1));
            if (!incident.startedAt.isValid())
                incident.startedAt = instant(d.optionalString(entry, "createdAt"_L1));
            incident.updatedAt = instant(d.optionalString(entry, "updatedAt"_L1));
            if (auto updates = d.optionalArray(entry, "incidentUpdates"_L1);
                updates && !updates->isEmpty()) {
                // Newest first.
                incident.update = capped(
                    d.optionalString(d.element(updates->first(), "incidentUpdates"_L1), "body"_L1));
            }
            incident.url = linkOf(d.optionalString(entry, "shortlink"_L1), page, incident.id);
            return isOpen(incident.stage);
        });
}

QList<Maintenance> statuspageMaintenances(const JsonObject &root, const WebLink &page)
{
    return entries<Maintenance>(
        root, "scheduled_maintenances"_L1, KeyStyle::fromSnakeCase,
        [&page](JsonDecoder &d, const JsonObject &entry, Maintenance &window) {
            window.id = capped(d.string(entry, "id"_L1));
            window.name = capped(d.string(entry, "name"_L1));
            window.status = word(d.optionalString(entry, "status"_L1));
            window.startsAt = instant(d.optionalString(entry, "scheduledFor"_L1));
            window.endsAt = instant(d.optionalString(entry, "scheduledUntil"_L1));
            window.url = linkOf(d.optionalString(entry, "shortlink"_L1), page, window.id);
            return true;
        });
}

QList<Incident> incidentioIncidents(const JsonObject &summary, const WebLink &page)
{
    return entries<Incident>(
        summary, "ongoing_incidents"_L1, KeyStyle::fromSnakeCase,
        [&page](JsonDecoder &d, const JsonObject &entry, Incident &incident) {
            incident.id = capped(d.optionalString(entry, "id"_L1));
            incident.name = capped(d.string(entry, "name"_L1));
            incident.stage = word(d.optionalString(entry, "status"_L1));
            incident.impact = word(d.optionalString(entry, "currentWorstImpact"_L1));
            incident.startedAt = instant(d.optionalString(entry, "publishedAt"_L1));
            // The earliest impact on a component is when it began, where the page says.
            if (auto impacts = d.optionalArray(entry, "componentImpacts"_L1)) {
                for (const JsonValue &value : *impacts) {
                    const QDateTime start = instant(
                        d.optionalString(d.element(value, "componentImpacts"_L1), "startAt"_L1));
                    if (start.isValid() &&
                        (!incident.startedAt.isValid() || start < incident.startedAt))
                        incident.startedAt = start;
                }
            }
            incident.updatedAt = instant(d.optionalString(entry, "lastUpdateAt"_L1));
            incident.update = capped(d.optionalString(entry, "lastUpdateMessage"_L1));
            if (auto updates = d.optionalArray(entry, "updates"_L1);
                updates && !updates->isEmpty()) {
                const JsonObject latest = d.element(updates->first(), "updates"_L1);
                incident.update = capped(d.optionalString(latest, "message"_L1));
                incident.updatedAt = instant(d.optionalString(latest, "publishedAt"_L1));
            }
            if (!incident.updatedAt.isValid())
                incident.updatedAt = incident.startedAt;
            incident.url = linkOf(d.optionalString(entry, "url"_L1), page, incident.id);
            return isOpen(incident.stage);
        });
}

QList<Maintenance> incidentioMaintenances(const JsonObject &summary, const WebLink &page)
{
    const auto read = [&page](JsonDecoder &d, const JsonObject &entry, Maintenance &window) {
        window.id = capped(d.optionalString(entry, "id"_L1));
        window.name = capped(d.string(entry, "name"_L1));
        window.status = word(d.optionalString(entry, "status"_L1));
        window.startsAt = instant(d.optionalString(entry, "scheduledStartAt"_L1));
        if (!window.startsAt.isValid())
            window.startsAt = instant(d.optionalString(entry, "startsAt"_L1));
        window.endsAt = instant(d.optionalString(entry, "scheduledEndAt"_L1));
        if (!window.endsAt.isValid())
            window.endsAt = instant(d.optionalString(entry, "endsAt"_L1));
        window.url = linkOf(d.optionalString(entry, "url"_L1), page, window.id);
        return true;
    };
    QList<Maintenance> windows =
        entries<Maintenance>(summary, "in_progress_maintenances"_L1, KeyStyle::fromSnakeCase,
                             [&read](JsonDecoder &d, const JsonObject &entry, Maintenance &window) {
                                 if (!read(d, entry, window))
                                     return false;
                                 if (window.status.isEmpty())
                                     window.status = u"in_progress"_s;
                                 return true;
                             });
    windows +=
        entries<Maintenance>(summary, "scheduled_maintenances"_L1, KeyStyle::fromSnakeCase, read);
    return windows.mid(0, maximumEntries);
}

QList<Incident> relayIncidents(const JsonObject &root)
{
    return entries<Incident>(root, "incidents"_L1, KeyStyle::exact,
                             [](JsonDecoder &d, const JsonObject &entry, Incident &incident) {
                                 incident.id = capped(d.string(entry, "id"_L1));
                                 incident.name = capped(d.string(entry, "name"_L1));
                                 incident.stage = word(d.optionalString(entry, "status"_L1));
                                 incident.impact = word(d.optionalString(entry, "impact"_L1));
                                 incident.startedAt =
                                     instant(d.optionalString(entry, "startedAt"_L1));
                                 incident.updatedAt =
                                     instant(d.optionalString(entry, "updatedAt"_L1));
                                 incident.update = capped(d.optionalString(entry, "update"_L1));
                                 if (auto url = d.optionalString(entry, "url"_L1))
                                     incident.url = WebLink::parse(*url);
                                 return isOpen(incident.stage);
                             });
}

QList<Maintenance> relayMaintenances(const JsonObject &root)
{
    return entries<Maintenance>(root, "maintenances"_L1, KeyStyle::exact,
                                [](JsonDecoder &d, const JsonObject &entry, Maintenance &window) {
                                    window.id = capped(d.string(entry, "id"_L1));
                                    window.name = capped(d.string(entry, "name"_L1));
                                    window.status = word(d.optionalString(entry, "status"_L1));
                                    window.startsAt =
                                        instant(d.optionalString(entry, "startsAt"_L1));
                                    window.endsAt = instant(d.optionalString(entry, "endsAt"_L1));
                                    if (auto url = d.optionalString(entry, "url"_L1))
                                        window.url = WebLink::parse(*url);
                                    return true;
                                });
}

QList<Maintenance> current(const QList<Maintenance> &windows, const QDateTime &now)
{
    QList<Maintenance> kept;
    const QDateTime horizon = now.addDays(7);
    for (const Maintenance &window : windows) {
        if (window.status == "completed"_L1 || (window.endsAt.isValid() && window.endsAt <= now))
            continue;
        if (!window.isInProgress(now) && (!window.startsAt.isValid() || window.startsAt > horizon))
            continue;
        kept.append(window);
    }
    return kept;
}

} // namespace lanternic::NewsReader
