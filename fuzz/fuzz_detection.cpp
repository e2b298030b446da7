// Any response body through the detection chain: every reader may look at it.

#include "sources/jsonsource.h"

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
    const SourceResult result =
        source.read(QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size)));
    // Whatever the body, the result links only to the web.
    if (result.url && result.url->scheme() != QLatin1StringView("https") &&
        result.url->scheme() != QLatin1StringView("http"))
        __builtin_trap();
    return 0;
}
