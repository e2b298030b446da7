#include "model/urls.h"
#include "sources/readers/feeddocument.h"
#include "sources/readers/jsondecoder.h"
#include "sources/readers/readerkit.h"

namespace lanternic::FeedReaders {

using namespace Qt::StringLiterals;
using namespace ReaderKit;

// Azure's feed lists the events going on now, and nothing while all is well. It is known by
// the host it comes from (or, read from a file, the home page given): its items look like any
// feed's.
std::optional<SourceResult> azure(const JSONSource &source, const FeedDocument &feed,
                                  const QDateTime &)
{
    const QString host = (source.url.isEmpty() ? source.homeURL : source.url).host();
    if (host != "azure.status.microsoft"_L1 && !host.endsWith(".azure.status.microsoft"_L1))
        return std::nullopt;
    SourceResult result = start(source);
    for (const FeedDocument::Item &item : feed.items) {
        Incident incident;
        incident.id = !item.id.isEmpty() ? item.id : item.link;
        incident.name = plainFeedText(item.title).left(JsonValues::maximumTextLength);
        incident.url = WebLink::parse(item.link);
        incident.startedAt = item.published;
        incident.updatedAt = item.when();
        incident.update = plainFeedText(item.text).left(JsonValues::maximumTextLength);
        result.incidents.append(incident);
    }
    const Health health = result.incidents.isEmpty() ? Health::operational : Health::degraded;
    return settle(std::move(result), health);
}

} // namespace lanternic::FeedReaders
