#include "cli/passcommand.h"

#include "cli/resultjson.h"
#include "model/feedtext.h"
#include "model/settingskeys.h"
#include "store/appenvironment.h"
#include "store/displaytext.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>
#include <QTemporaryDir>
#include <cstdio>

namespace lanternic::cli {

using namespace Qt::StringLiterals;

namespace {

void copyLanternicKeys(QSettings &from, QSettings &to, const QStringList &except = {})
{
    for (const QString &key : from.allKeys()) {
        if (key.startsWith("Lanternic."_L1) && !except.contains(key))
            to.setValue(key, from.value(key));
    }
}

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

QByteArray textReport(const LanternicStore &store)
{
    const QList<DisplayProvider> rows = store.providers();
    qsizetype width = 0;
    for (const DisplayProvider &row : rows)
        width = std::max(width, terminalText(row.result.name).size());
    QString text;
    for (const DisplayProvider &row : rows) {
        text += healthMark(row.health) + u' ' + terminalText(row.result.name).leftJustified(width) +
                u"  "_s + terminalText(row.detail) + u'\n';
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

} // namespace

int runPass(const Invocation &invocation)
{
    // The pass runs on a private copy, so the user's own settings are never written; with
    // --settings what it learns is copied back, as the app would have kept it.
    QTemporaryDir workDir;
    std::unique_ptr<QSettings> origin =
        invocation.settingsFile
            ? std::make_unique<QSettings>(*invocation.settingsFile, QSettings::IniFormat)
            : std::make_unique<QSettings>(u"Lanternic"_s, u"Lanternic"_s);
    QSettings work(workDir.filePath(u"settings.ini"_s), QSettings::IniFormat);
    copyLanternicKeys(*origin, work);
    if (!workDir.isValid() || origin->status() != QSettings::NoError) {
        std::fprintf(stderr, "lanternic-check: cannot read the settings %s\n",
                     qUtf8Printable(origin->fileName()));
        return usageExitCode;
    }
    if (invocation.sourcesText)
        work.setValue(SettingsKeys::sources, *invocation.sourcesText);

    int exitCode = usageExitCode;
    {
        AppEnvironment environment(work);
        const LanternicStore &store = *environment.store;
        QObject::connect(&store, &LanternicStore::passFinished, &store, [&] {
            const QByteArray report = invocation.json ? jsonReport(store) : textReport(store);
            std::fputs(report.constData(), stdout);
            QCoreApplication::exit(exitCodeFor(store.overallHealth()));
        });
        exitCode = QCoreApplication::exec();
    }

    if (invocation.settingsFile) {
        copyLanternicKeys(work, *origin,
                          invocation.sourcesText ? QStringList{SettingsKeys::sources}
                                                 : QStringList());
        origin->sync();
        if (origin->status() != QSettings::NoError) {
            std::fprintf(stderr, "lanternic-check: cannot write the settings %s\n",
                         qUtf8Printable(origin->fileName()));
            return usageExitCode;
        }
    }
    return exitCode;
}

} // namespace lanternic::cli
