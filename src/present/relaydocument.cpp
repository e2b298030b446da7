#include "present/relaydocument.h"

#include "model/feedtext.h"
#include "present/resultjson.h"
#include "sources/readers/relayfeed.h"
#include "store/lanternicstore.h"

#include <QJsonArray>

namespace lanternic {

using namespace Qt::StringLiterals;

QJsonObject relayDocument(const LanternicStore &store, const QString &name,
                          const std::optional<QUrl> &url)
{
    QJsonArray components;
    for (const DisplayProvider &row : store.providers()) {
        components.append(QJsonObject{{u"id"_s, FeedText::clean(row.result.id)},
                                      {u"name"_s, FeedText::clean(row.result.name)},
                                      {u"status"_s, rawValue(row.health)},
                                      {u"label"_s, FeedText::clean(row.detail)}});
    }
    // Every source's news, named after its source, so that subscribers see where it is.
    QJsonArray incidents;
    QJsonArray maintenances;
    for (const SourceResult &result : store.results()) {
        const QString source = FeedText::clean(result.name);
        for (Incident incident : result.incidents) {
            incident.stage = FeedText::clean(incident.stage, 40);
            incident.impact = FeedText::clean(incident.impact, 40);
            incident.update = FeedText::clean(incident.update, 1000);
            incidents.append(incidentToJson(incident,
                                            FeedText::clean(result.id + u"::"_s + incident.id),
                                            source + u": "_s + FeedText::clean(incident.name)));
        }
        for (Maintenance window : result.maintenances) {
            window.status = FeedText::clean(window.status, 40);
            maintenances.append(maintenanceToJson(window,
                                                  FeedText::clean(result.id + u"::"_s + window.id),
                                                  source + u": "_s + FeedText::clean(window.name)));
        }
    }
    // The watchers this feed passed through, this one first, so that one that reads its own
    // feed back through others sees the loop.
    QStringList via;
    if (!store.relayIdentity().isEmpty())
        via.append(store.relayIdentity());
    for (const SourceResult &result : store.results())
        via += result.relayedVia;
    via.removeDuplicates();
    QJsonArray watchers;
    for (const QString &watcher : via.mid(0, RelayFeedSource::maximumRelayHops))
        watchers.append(FeedText::clean(watcher, 64));
    QJsonObject document{{u"schema"_s, u"lanternic.v1"_s},
                         {u"name"_s, FeedText::clean(name)},
                         {u"health"_s, rawValue(store.overallHealth())},
                         {u"detail"_s, FeedText::clean(store.summaryText())},
                         {u"components"_s, components},
                         {u"incidents"_s, incidents},
                         {u"maintenances"_s, maintenances},
                         {u"via"_s, watchers}};
    if (url)
        document.insert(u"url"_s, url->toString(QUrl::FullyEncoded));
    return document;
}

} // namespace lanternic
