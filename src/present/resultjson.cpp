#include "present/resultjson.h"

#include "present/jsonwriter.h"

#include <chrono>

namespace lanternic {

using namespace Qt::StringLiterals;

QString isoTimestamp(const QDateTime &time, Qt::DateFormat format)
{
    // Qt converts through time zones to format a date, some ten thousand instructions: a
    // report of a thousand results writes several thousand dates. From 1970 to the end of
    // 9999, the digits are written here, as Qt writes them ("Z" at the end).
    using namespace std::chrono;
    const qint64 ms = time.isValid() ? time.toMSecsSinceEpoch() : -1;
    const bool withMs = format == Qt::ISODateWithMs;
    if (ms < 0 || ms >= 253'402'300'800'000 || (!withMs && format != Qt::ISODate))
        return time.toUTC().toString(format);
    const sys_seconds instant{floor<seconds>(milliseconds(ms))};
    const sys_days day = floor<days>(instant);
    const year_month_day date(day);
    const hh_mm_ss clock(instant - day);
    char16_t text[24];
    const auto put = [&text](int at, unsigned value, int digits) {
        for (int i = at + digits - 1; i >= at; --i, value /= 10)
            text[i] = char16_t(u'0' + value % 10);
    };
    put(0, unsigned(int(date.year())), 4);
    text[4] = u'-';
    put(5, unsigned(date.month()), 2);
    text[7] = u'-';
    put(8, unsigned(date.day()), 2);
    text[10] = u'T';
    put(11, unsigned(clock.hours().count()), 2);
    text[13] = u':';
    put(14, unsigned(clock.minutes().count()), 2);
    text[16] = u':';
    put(17, unsigned(clock.seconds().count()), 2);
    int end = 19;
    if (withMs) {
        text[end++] = u'.';
        put(end, unsigned(ms % 1000), 3);
        end += 3;
    }
    text[end++] = u'Z';
    return QString(reinterpret_cast<const QChar *>(text), end);
}

void writeTime(JsonWriter &out, const QDateTime &time, Qt::DateFormat format)
{
    if (time.isValid())
        out.value(isoTimestamp(time, format));
    else
        out.null();
}

void writeLink(JsonWriter &out, const std::optional<WebLink> &link)
{
    if (link)
        out.value(link->toString(QUrl::FullyEncoded));
    else
        out.null();
}

QJsonValue urlOrNull(const std::optional<QUrl> &url)
{
    return url ? QJsonValue(url->toString(QUrl::FullyEncoded)) : QJsonValue();
}

// Members in the order a QJsonObject keeps them: sorted by name.
void writeIncident(JsonWriter &out, const Incident &incident, const QString &id,
                   const QString &name)
{
    out.beginObject();
    out.key("id"_L1).value(id);
    out.key("impact"_L1).textOrNull(incident.impact);
    out.key("name"_L1).value(name);
    writeTime(out.key("startedAt"_L1), incident.startedAt);
    out.key("status"_L1).value(incident.stage);
    out.key("update"_L1).textOrNull(incident.update);
    writeTime(out.key("updatedAt"_L1), incident.updatedAt);
    writeLink(out.key("url"_L1), incident.url);
    out.endObject();
}

void writeMaintenance(JsonWriter &out, const Maintenance &window, const QString &id,
                      const QString &name)
{
    out.beginObject();
    writeTime(out.key("endsAt"_L1), window.endsAt);
    out.key("id"_L1).value(id);
    out.key("name"_L1).value(name);
    writeTime(out.key("startsAt"_L1), window.startsAt);
    out.key("status"_L1).value(window.status);
    writeLink(out.key("url"_L1), window.url);
    out.endObject();
}

void writeResult(JsonWriter &out, const SourceResult &result)
{
    out.beginObject();
    out.key("checkedAt"_L1).value(isoTimestamp(result.checkedAt));
    out.key("components"_L1).beginArray();
    for (const ComponentStatus &component : result.components) {
        out.beginObject();
        out.key("health"_L1).value(rawValue(component.health));
        out.key("id"_L1).value(component.id.toString());
        out.key("name"_L1).value(component.name);
        out.key("status"_L1).value(component.status);
        out.endObject();
    }
    out.endArray();
    out.key("detail"_L1).value(result.detail);
    if (result.error)
        out.key("error"_L1).value(*result.error);
    else
        out.key("error"_L1).null();
    out.key("health"_L1).value(rawValue(result.health));
    out.key("id"_L1).value(result.id);
    out.key("incidents"_L1).beginArray();
    for (const Incident &incident : result.incidents)
        writeIncident(out, incident, incident.id, incident.name);
    out.endArray();
    out.key("maintenances"_L1).beginArray();
    for (const Maintenance &window : result.maintenances)
        writeMaintenance(out, window, window.id, window.name);
    out.endArray();
    out.key("name"_L1).value(result.name);
    if (result.url)
        out.key("url"_L1).value(result.url->toString());
    else
        out.key("url"_L1).null();
    out.endObject();
}

QByteArray resultJson(const SourceResult &result)
{
    JsonWriter out;
    writeResult(out, result);
    return out.take();
}

} // namespace lanternic
