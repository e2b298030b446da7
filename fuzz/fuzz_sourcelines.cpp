// Any sources text, as a user may type or paste it, into sources and probe hosts.

#include "config/sourceregistry.h"
#include "model/urls.h"

#include <QSet>
#include <QString>
#include <algorithm>

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
    // A bare host's address is made from its parts, not parsed: it must be what parsing gives.
    // A plain link is known one without a parse: it must be one when parsed...
    for (const SourceEntry &entry : SourceRegistry::entries(text)) {
        const QString &value = entry.value;
        for (const QString &link : {value, QStringLiteral("https://") + value}) {
            const std::optional<WebLink> parsed = WebLink::parse(link);
            if (parsed.has_value() != parseWebUrl(link).has_value())
                __builtin_trap();
            // ... and reads back as parsing would write it.
            for (auto options : {QUrl::PrettyDecoded, QUrl::FullyEncoded}) {
                if (parsed && parsed->toString(options) != parsed->url().toString(options))
                    __builtin_trap();
            }
        }
        const bool bare =
            value.front().isLetterOrNumber() &&
            std::all_of(value.begin(), value.end(), [](QChar c) {
                return c.unicode() < 128 && (c.isLetterOrNumber() || c == u'.' || c == u'-');
            });
        if (!bare)
            continue;
        const QUrl parsed(QStringLiteral("https://") + value, QUrl::StrictMode);
        const std::optional<Target> target = Target::classify(value);
        const auto *base = target ? std::get_if<Target::Base>(&target->value) : nullptr;
        if (parsed.isValid() && !parsed.host().isEmpty() ? !target || (base && base->home != parsed)
                                                         : target.has_value())
            __builtin_trap();
    }
    return 0;
}
