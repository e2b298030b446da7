// Any body through the feed decoder and the feeds' readers, as if from Azure's host so that
// every feed reader may look at it.

#include "sources/readers/feeddocument.h"
#include "sources/sourcecheck.h"

#include <QByteArray>

using namespace lanternic;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const JSONSource source = [] {
        JSONSource s;
        s.id = QStringLiteral("fuzz");
        s.name = QStringLiteral("Fuzz");
        s.url = QUrl(QStringLiteral("https://azure.status.microsoft/en-us/status/feed/"));
        s.homeURL = QUrl(QStringLiteral("https://status.example.com"));
        return s;
    }();
    const QByteArray body =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    if (const auto feed = FeedDocument::parse(body)) {
        // The decoder's bounds hold whatever the body.
        if (feed->items.size() > FeedDocument::maximumItems)
            __builtin_trap();
        for (const FeedDocument::Item &item : feed->items) {
            if (item.title.size() > FeedDocument::maximumTextLength ||
                item.text.size() > FeedDocument::maximumTextLength)
                __builtin_trap();
            plainFeedText(item.text);
        }
    }
    const SourceResult result = SourceCheck::read(source, body);
    for (const Incident &incident : result.incidents) {
        if (incident.url && incident.url->url().scheme() != QLatin1StringView("https") &&
            incident.url->url().scheme() != QLatin1StringView("http"))
            __builtin_trap();
    }
    return 0;
}
