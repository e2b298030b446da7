#include "cli/listcommands.h"

#include "config/catalog.h"
#include "config/sourceregistry.h"
#include "model/feedtext.h"
#include "model/settingskeys.h"
#include "present/historyreport.h"
#include "present/sourcelines.h"
#include "sources/sourcekindstore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <cstdio>

namespace lanternic::cli {

using namespace Qt::StringLiterals;

int runCatalog(const Invocation &invocation)
{
    const QList<CatalogEntry> found = Catalog::builtIn().search(invocation.words);
    if (invocation.report.format == Format::json) {
        QJsonArray entries;
        for (const CatalogEntry &entry : found) {
            entries.append(QJsonObject{
                {u"name"_s, entry.name}, {u"url"_s, entry.url}, {u"platform"_s, entry.platform}});
        }
        std::fputs(QJsonDocument(entries).toJson(QJsonDocument::Compact).append('\n').constData(),
                   stdout);
    } else {
        qsizetype width = 0;
        for (const CatalogEntry &entry : found)
            width = std::max(width, entry.name.size());
        QString text;
        for (const CatalogEntry &entry : found)
            text += entry.name.leftJustified(width) + u"  "_s + entry.url + u"  "_s +
                    entry.platform + u'\n';
        std::fputs(text.toUtf8().constData(), stdout);
    }
    if (found.isEmpty())
        std::fprintf(stderr, "lanternic-check: nothing in the catalogue matches \"%s\"\n",
                     qUtf8Printable(FeedText::clean(invocation.words.join(u' '), 200)));
    return found.isEmpty() ? 1 : 0;
}

namespace {

std::unique_ptr<QSettings> settingsOf(const Invocation &invocation)
{
    return invocation.settingsFile
               ? std::make_unique<QSettings>(*invocation.settingsFile, QSettings::IniFormat)
               : std::make_unique<QSettings>(u"Lanternic"_s, u"Lanternic"_s);
}

} // namespace

int runHistory(const Invocation &invocation)
{
    const std::unique_ptr<QSettings> settings = settingsOf(invocation);
    const HealthLog log = HealthLog::load(*settings).value_or(HealthLog());
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDateTime from = now.addDays(-invocation.days);
    QList<HistoryRow> rows;
    for (const JSONSource &source : SourceRegistry::sources(
             settings->value(SettingsKeys::sources).toString(), SourceKindStore(*settings).cache()))
        rows.append({source.id, source.name, log.uptime(source.id, from, now)});
    std::fputs(historyReport(rows, now, invocation.report.format == Format::json).constData(),
               stdout);
    return 0;
}

int runSources(const Invocation &invocation)
{
    QString text;
    QHash<QString, SourceKind> kinds;
    {
        const std::unique_ptr<QSettings> settings = settingsOf(invocation);
        text = settings->value(SettingsKeys::sources).toString();
        kinds = SourceKindStore(*settings).cache();
    }
    if (invocation.sourcesText)
        text = *invocation.sourcesText;
    QString out;
    bool usable = false;
    for (const LineReading &reading : SourceRegistry::readLines(text, kinds)) {
        out += SourceLines::describe(reading) + u'\n';
        usable = usable || reading.source;
    }
    if (!usable)
        out += u"no line makes a source: the default sources are watched\n"_s;
    std::fputs(out.toUtf8().constData(), stdout);
    return usable ? 0 : usageExitCode;
}

} // namespace lanternic::cli
