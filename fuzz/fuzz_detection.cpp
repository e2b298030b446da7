// Any response body through the detection chain: every reader may look at it.

#include "model/feedtext.h"
#include "sources/sourcecheck.h"

#include <QByteArray>

using namespace lanternic;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const JSONSource source = [] {
        JSONSource s;
        s.id = QStringLiteral("fuzz");
        s.name = QStringLiteral("Fuzz");
        s.homeURL = QUrl(QStringLiteral("https://status.example.com"));
        s.updogProvider = QStringLiteral("amazonaws");
        s.includeGroups = QSet<QString>{QStringLiteral("Sites")};
        return s;
    }();
    const QByteArray body =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
    const SourceResult result = SourceCheck::read(source, body);
    // What a reader keeps is shown through the same cleaning, and so is any text at all.
    for (const ComponentStatus &component : result.components)
        FeedText::clean(component.name, 40);
    FeedText::clean(result.name, 40);
    FeedText::clean(result.detail, 40);
    FeedText::clean(QString::fromUtf8(body), 40);
    // Whatever the body, the result links only to the web.
    if (result.url && result.url->url().scheme() != QLatin1StringView("https") &&
        result.url->url().scheme() != QLatin1StringView("http"))
        __builtin_trap();
    return 0;
}
