#include "present/passreports.h"

#include "model/feedtext.h"
#include "present/displaytext.h"
#include "present/jsonwriter.h"
#include "present/relaydocument.h"
#include "present/resultjson.h"
#include "store/lanternicstore.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

QString healthMark(Health health)
{
    switch (health) {
    case Health::operational:
        return u"\u2713"_s;
    case Health::degraded:
        return u"!"_s;
    case Health::down:
        return u"\u2717"_s;
    case Health::unknown:
        break;
    }
    return u"?"_s;
}

QString untilText(const SilenceUntil &until)
{
    switch (until.kind) {
    case SilenceUntil::Kind::resolved:
        return u"resolved"_s;
    case SilenceUntil::Kind::forever:
        return u"forever"_s;
    case SilenceUntil::Kind::date:
        break;
    }
    return isoTimestamp(until.date);
}

// Members in the order a QJsonObject keeps them: sorted by name.
QByteArray jsonReport(const LanternicStore &store)
{
    const LanternicStore::Display display = store.display();
    JsonWriter out;
    out.beginObject();
    out.key("badgeCount"_L1).value(qint64(display.issueCount));
    out.key("checkedAt"_L1).value(isoTimestamp(store.lastChecked().value_or(store.now())));
    out.key("overallHealth"_L1).value(rawValue(display.overall));
    out.key("results"_L1).beginArray();
    for (const SourceResult &result : store.results())
        writeResult(out, result);
    out.endArray();
    out.key("rows"_L1).beginArray();
    for (const DisplayProvider &row : display.providers) {
        out.beginObject();
        out.key("detail"_L1).value(row.detail);
        out.key("health"_L1).value(rawValue(row.health));
        out.key("id"_L1).value(row.result.id);
        out.key("name"_L1).value(row.result.name);
        out.endObject();
    }
    out.endArray();
    out.key("silenced"_L1).beginArray();
    for (const SilencedItem &item : store.silencedItems()) {
        out.beginObject();
        out.key("id"_L1).value(item.id);
        out.key("title"_L1).value(item.title);
        out.key("until"_L1).value(untilText(item.until));
        out.endObject();
    }
    out.endArray();
    out.key("summaryText"_L1).value(display.summaryText);
    out.endObject();
    return out.take() + '\n';
}

// Feed text on a terminal: one line, no escape sequences, a sane width.
QString terminalText(const QString &text)
{
    return FeedText::clean(text, 200);
}

// A line per open incident and per maintenance in progress.
QStringList newsLines(const SourceResult &result, const QDateTime &now)
{
    QStringList lines;
    for (const Incident &incident : result.incidents)
        lines.append(DisplayText::incidentLine(incident, now));
    for (const Maintenance &window : result.maintenances) {
        if (window.isInProgress(now))
            lines.append(DisplayText::maintenanceLine(window, now));
    }
    return lines;
}

QByteArray textReport(const LanternicStore &store)
{
    const LanternicStore::Display display = store.display();
    const QList<DisplayProvider> &rows = display.providers;
    qsizetype width = 0;
    for (const DisplayProvider &row : rows)
        width = std::max(width, terminalText(row.result.name).size());
    QString text;
    const QDateTime now = store.now();
    for (const DisplayProvider &row : rows) {
        // Planned work alone has a mark of its own: a hammer and pick.
        const QString mark = row.maintenance ? u"\u2692"_s : healthMark(row.health);
        text += mark + u' ' + terminalText(row.result.name).leftJustified(width) + u"  "_s +
                terminalText(row.detail) + u'\n';
        for (const QString &line : newsLines(row.result, now))
            text += u"  \u21b3 "_s + line + u'\n';
    }
    text += display.summaryText + u'\n';
    const QList<SilencedItem> silenced = store.silencedItems();
    if (!silenced.isEmpty()) {
        text += u"\nSilenced:\n"_s;
        for (const SilencedItem &item : silenced)
            text += u"  "_s + terminalText(item.title) + u" ("_s +
                    DisplayText::timeLeftText(item.until, store.now()) + u")\n"_s;
    }
    return text.toUtf8();
}

QByteArray compactLine(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

// One line for a waybar custom module with "return-type": "json". Waybar reads text and
// tooltip as Pango markup, so feed text is escaped as well as cleaned.
QByteArray waybarReport(const LanternicStore &store, bool shortText)
{
    const LanternicStore::Display display = store.display();
    const Health overall = display.overall;
    const int issues = display.issueCount;
    const QString text =
        shortText ? healthMark(overall) + (issues > 0 ? u' ' + QString::number(issues) : QString())
                  : display.summaryText;
    QStringList tooltip;
    for (const DisplayProvider &row : display.providers) {
        tooltip.append(terminalText(row.result.name) + u": "_s + terminalText(row.detail));
        for (const Incident &incident : row.result.incidents)
            tooltip.append(u"  \u21b3 "_s + terminalText(incident.name));
    }
    static const QHash<Health, int> percentage{{Health::operational, 100},
                                               {Health::degraded, 66},
                                               {Health::unknown, 33},
                                               {Health::down, 0}};
    return compactLine({{u"text"_s, text.toHtmlEscaped()},
                        {u"tooltip"_s, tooltip.join(u'\n').toHtmlEscaped()},
                        {u"class"_s, rawValue(overall)},
                        {u"percentage"_s, percentage.value(overall)}});
}

// The monitoring-plugin convention: a status line with performance data, then one line per
// row that is not operational.
QByteArray nagiosReport(const LanternicStore &store)
{
    static const QHash<Health, QString> states{{Health::operational, u"OK"_s},
                                               {Health::degraded, u"WARNING"_s},
                                               {Health::down, u"CRITICAL"_s},
                                               {Health::unknown, u"UNKNOWN"_s}};
    const LanternicStore::Display display = store.display();
    const QList<DisplayProvider> &rows = display.providers;
    QHash<Health, int> counts;
    for (const DisplayProvider &row : rows)
        ++counts[row.health];
    // A "|" in feed text would end the plugin output and start its performance data.
    auto plain = [](const QString &text) { return terminalText(text).replace(u'|', u'/'); };
    QString text = u"LANTERNIC %1 - %2 | down=%3 degraded=%4 unknown=%5 operational=%6\n"_s
                       .arg(states.value(display.overall), plain(display.summaryText))
                       .arg(counts.value(Health::down))
                       .arg(counts.value(Health::degraded))
                       .arg(counts.value(Health::unknown))
                       .arg(counts.value(Health::operational));
    for (const DisplayProvider &row : rows) {
        if (row.health != Health::operational)
            text += healthMark(row.health) + u' ' + plain(row.result.name) + u": "_s +
                    plain(row.detail) + u'\n';
    }
    // Incidents too, where the page is open about one while it reads operational.
    for (const DisplayProvider &row : rows) {
        for (const Incident &incident : row.result.incidents)
            text += u"\u21b3 "_s + plain(row.result.name) + u": "_s + plain(incident.name) + u'\n';
    }
    return text.toUtf8();
}

// Three lines for i3blocks: full text, short text, and the colour of the overall health.
QByteArray i3blocksReport(const LanternicStore &store)
{
    static const QHash<Health, QByteArray> colours{{Health::operational, "#30B450"},
                                                   {Health::degraded, "#F58C00"},
                                                   {Health::down, "#E83A30"},
                                                   {Health::unknown, "#8E8E93"}};
    const LanternicStore::Display display = store.display();
    const Health overall = display.overall;
    const int issues = display.issueCount;
    const QString mark = healthMark(overall);
    return (mark + u' ' + terminalText(display.summaryText)).toUtf8() + '\n' +
           (mark + (issues > 0 ? u' ' + QString::number(issues) : QString())).toUtf8() + '\n' +
           colours.value(overall) + '\n';
}

} // namespace

QByteArray report(const LanternicStore &store, const ReportOptions &options)
{
    switch (options.format) {
    case ReportFormat::json:
        return jsonReport(store);
    case ReportFormat::relay:
        return relayDocument(store, options.relayName, options.relayUrl) + '\n';
    case ReportFormat::waybar:
        return waybarReport(store, options.shortText);
    case ReportFormat::nagios:
        return nagiosReport(store);
    case ReportFormat::i3blocks:
        return i3blocksReport(store);
    case ReportFormat::line: {
        const LanternicStore::Display display = store.display();
        return (healthMark(display.overall) + u' ' + terminalText(display.summaryText)).toUtf8() +
               '\n';
    }
    case ReportFormat::text:
        break;
    }
    return textReport(store);
}

} // namespace lanternic
