#include "present/relaydocument.h"

#include "model/feedtext.h"
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
    QJsonObject document{{u"schema"_s, u"lanternic.v1"_s},
                         {u"name"_s, FeedText::clean(name)},
                         {u"health"_s, rawValue(store.overallHealth())},
                         {u"detail"_s, FeedText::clean(store.summaryText())},
                         {u"components"_s, components}};
    if (url)
        document.insert(u"url"_s, url->toString(QUrl::FullyEncoded));
    return document;
}

} // namespace lanternic
