// Any sources text, as a user may type or paste it, into sources and probe hosts.

#include "config/sourceregistry.h"

#include <QSet>
#include <QString>

using namespace lanternic;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const QList<JSONSource> sources = SourceRegistry::sources(text, {});
    QSet<QString> ids;
    for (const JSONSource &source : sources) {
        // Never no source, and never two with one id.
        if (ids.contains(source.id))
            __builtin_trap();
        ids.insert(source.id);
    }
    if (sources.isEmpty())
        __builtin_trap();
    SourceRegistry::baseHosts(text);
    return 0;
}
