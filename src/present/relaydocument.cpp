#include "present/relaydocument.h"

#include "model/feedtext.h"
#include "present/jsonwriter.h"
#include "present/resultjson.h"
#include "sources/readers/relayfeed.h"
#include "store/lanternicstore.h"

namespace lanternic {

using namespace Qt::StringLiterals;

// Members in the order a QJsonObject keeps them: sorted by name.
QByteArray relayDocument(const LanternicStore &store, const QString &name,
                         const std::optional<QUrl> &url)
{
    const LanternicStore::Display display = store.display();
    JsonWriter out;
    out.beginObject();
    out.key("components"_L1).beginArray();
    for (const DisplayProvider &row : display.providers) {
        out.beginObject();
        out.key("id"_L1).value(FeedText::clean(row.result.id));
        out.key("label"_L1).value(FeedText::clean(row.detail));
        out.key("name"_L1).value(FeedText::clean(row.result.name));
        out.key("status"_L1).value(rawValue(row.health));
        out.endObject();
    }
    out.endArray();
    out.key("detail"_L1).value(FeedText::clean(display.summaryText));
    out.key("health"_L1).value(rawValue(display.overall));
    // Every source's news, named after its source, so that subscribers see where it is.
    out.key("incidents"_L1).beginArray();
    for (const SourceResult &result : store.results()) {
        const QString source = FeedText::clean(result.name);
        for (Incident incident : result.incidents) {
            incident.stage = FeedText::clean(incident.stage, 40);
            incident.impact = FeedText::clean(incident.impact, 40);
            incident.update = FeedText::clean(incident.update, 1000);
            writeIncident(out, incident, FeedText::clean(result.id + u"::"_s + incident.id),
                          source + u": "_s + FeedText::clean(incident.name));
        }
    }
    out.endArray();
    out.key("maintenances"_L1).beginArray();
    for (const SourceResult &result : store.results()) {
        const QString source = FeedText::clean(result.name);
        for (Maintenance window : result.maintenances) {
            window.status = FeedText::clean(window.status, 40);
            writeMaintenance(out, window, FeedText::clean(result.id + u"::"_s + window.id),
                             source + u": "_s + FeedText::clean(window.name));
        }
    }
    out.endArray();
    out.key("name"_L1).value(FeedText::clean(name));
    out.key("schema"_L1).value(u"lanternic.v1"_s);
    if (url)
        out.key("url"_L1).value(url->toString(QUrl::FullyEncoded));
    // The watchers this feed passed through, this one first, so that one that reads its own
    // feed back through others sees the loop.
    QStringList via;
    if (!store.relayIdentity().isEmpty())
        via.append(store.relayIdentity());
    for (const SourceResult &result : store.results())
        via += result.relayedVia;
    via.removeDuplicates();
    out.key("via"_L1).beginArray();
    for (const QString &watcher : via.mid(0, RelayFeedSource::maximumRelayHops))
        out.value(FeedText::clean(watcher, 64));
    out.endArray();
    out.endObject();
    return out.take();
}

} // namespace lanternic
