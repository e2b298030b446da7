#include "present/passreports.h"

#include "model/feedtext.h"
#include "present/displaytext.h"
#include "present/relaydocument.h"
#include "present/resultjson.h"
#include "store/lanternicstore.h"

#include <QJsonArray>
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

QJsonValue untilJson(const SilenceUntil &until)
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

QByteArray jsonReport(const LanternicStore &store)
{
    QJsonArray results;
    for (const SourceResult &result : store.results())
        results.append(resultToJson(result));
    QJsonArray rows;
    for (const DisplayProvider &row : store.providers()) {
        rows.append(QJsonObject{{u"id"_s, row.result.id},
                                {u"name"_s, row.result.name},
                                {u"health"_s, rawValue(row.health)},
                                {u"detail"_s, row.detail}});
    }
    QJsonArray silenced;
    for (const SilencedItem &item : store.silencedItems()) {
        silenced.append(QJsonObject{
            {u"id"_s, item.id}, {u"title"_s, item.title}, {u"until"_s, untilJson(item.until)}});
    }
    const Health overall = store.overallHealth();
    const QJsonObject report{
        {u"checkedAt"_s, isoTimestamp(store.lastChecked().value_or(store.now()))},
        {u"overallHealth"_s, rawValue(overall)},
        {u"summaryText"_s, store.summaryText()},
        {u"badgeCount"_s, store.issueCount(overall)},
        {u"results"_s, results},
        {u"rows"_s, rows},
        {u"silenced"_s, silenced},
    };
    return QJsonDocument(report).toJson(QJsonDocument::Compact) + '\n';
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
    const QList<DisplayProvider> rows = store.providers();
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
    text += store.summaryText() + u'\n';
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
    const Health overall = store.overallHealth();
    const int issues = store.issueCount(overall);
    const QString text =
        shortText ? healthMark(overall) + (issues > 0 ? u' ' + QString::number(issues) : QString())
                  : store.summaryText();
    QStringList tooltip;
    for (const DisplayProvider &row : store.providers()) {
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
    const QList<DisplayProvider> rows = store.providers();
    QHash<Health, int> counts;
    for (const DisplayProvider &row : rows)
        ++counts[row.health];
    // A "|" in feed text would end the plugin output and start its performance data.
    auto plain = [](const QString &text) { return terminalText(text).replace(u'|', u'/'); };
    QString text = u"LANTERNIC %1 - %2 | down=%3 degraded=%4 unknown=%5 operational=%6\n"_s
                       .arg(states.value(store.overallHealth()), plain(store.summaryText()))
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
    const Health overall = store.overallHealth();
    const int issues = store.issueCount(overall);
    const QString mark = healthMark(overall);
    return (mark + u' ' + terminalText(store.summaryText())).toUtf8() + '\n' +
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
        return compactLine(relayDocument(store, options.relayName, options.relayUrl));
    case ReportFormat::waybar:
        return waybarReport(store, options.shortText);
    case ReportFormat::nagios:
        return nagiosReport(store);
    case ReportFormat::i3blocks:
        return i3blocksReport(store);
    case ReportFormat::line:
        return (healthMark(store.overallHealth()) + u' ' + terminalText(store.summaryText()))
                   .toUtf8() +
               '\n';
    case ReportFormat::text:
        break;
    }
    return textReport(store);
}

} // namespace lanternic
