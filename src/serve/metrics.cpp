#include "serve/metrics.h"

#include "model/feedtext.h"
#include "store/lanternicstore.h"

namespace lanternic {

namespace {

// Appends a label. Its value is feed text cleaned and capped, which has turned line breaks into
// spaces already; of what the format escapes, that leaves backslashes and quotes.
void label(QByteArray &out, const char *name, const QString &text)
{
    out += name;
    out += "=\"";
    for (const char c : FeedText::clean(text, 200).toUtf8()) {
        if (c == '\\' || c == '"')
            out += '\\';
        out += c;
    }
    out += '"';
}

void family(QByteArray &out, const char *name, const char *type, const char *help)
{
    out += QByteArray("# HELP ") + name + ' ' + help + "\n# TYPE " + name + ' ' + type + '\n';
}

} // namespace

QByteArray prometheusMetrics(const LanternicStore &store, const PassStatistics &statistics)
{
    const QList<SourceResult> &results = store.results();
    // Built in place: with a hundred sources this is over a thousand lines each pass.
    QByteArray out;
    out.reserve(2048 + 128 * results.size() * 2);
    const auto sample = [&out](int value) {
        out += "} ";
        out += QByteArray::number(value);
        out += '\n';
    };
    family(out, "lanternic_source_health", "gauge",
           "Health of each source: 0 operational, 1 degraded, 2 down, 3 unknown.");
    for (const SourceResult &result : results) {
        out += "lanternic_source_health{";
        label(out, "id", result.id);
        label(out, ",name", result.name);
        sample(monitoringCode(result.health));
    }
    family(out, "lanternic_component_health", "gauge",
           "Health of each component: 0 operational, 1 degraded, 2 down, 3 unknown.");
    for (const SourceResult &result : results) {
        for (const ComponentStatus &component : result.components) {
            out += "lanternic_component_health{";
            label(out, "source", result.id);
            label(out, ",id", component.id);
            label(out, ",name", component.name);
            sample(monitoringCode(component.health));
        }
    }
    family(out, "lanternic_source_up", "gauge",
           "1 when the last check reached and read the source's page.");
    for (const SourceResult &result : results) {
        out += "lanternic_source_up{";
        label(out, "id", result.id);
        sample(result.error ? 0 : 1);
    }
    family(out, "lanternic_last_pass_timestamp_seconds", "gauge",
           "When the last check pass finished, in seconds since the Unix epoch.");
    out += "lanternic_last_pass_timestamp_seconds " +
           QByteArray::number(statistics.lastPass
                                  ? double(statistics.lastPass->toMSecsSinceEpoch()) / 1000.0
                                  : 0.0,
                              'f', 3) +
           '\n';
    family(out, "lanternic_pass_duration_seconds", "gauge", "How long the last check pass took.");
    out += "lanternic_pass_duration_seconds " +
           QByteArray::number(statistics.lastDurationSeconds, 'f', 3) + '\n';
    family(out, "lanternic_passes_total", "counter", "Check passes finished since start.");
    out += "lanternic_passes_total " + QByteArray::number(statistics.passes) + '\n';
    return out;
}

} // namespace lanternic
