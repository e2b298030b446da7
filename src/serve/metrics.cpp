#include "serve/metrics.h"

#include "model/feedtext.h"
#include "store/lanternicstore.h"

namespace lanternic {

namespace {

// A label value: feed text cleaned and capped, then escaped as the format asks.
QByteArray label(const QString &text)
{
    QByteArray value = FeedText::clean(text, 200).toUtf8();
    value.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n");
    return '"' + value + '"';
}

void family(QByteArray &out, const char *name, const char *type, const char *help)
{
    out += QByteArray("# HELP ") + name + ' ' + help + "\n# TYPE " + name + ' ' + type + '\n';
}

} // namespace

QByteArray prometheusMetrics(const LanternicStore &store, const PassStatistics &statistics)
{
    const QList<SourceResult> &results = store.results();
    QByteArray out;
    family(out, "lanternic_source_health", "gauge",
           "Health of each source: 0 operational, 1 degraded, 2 down, 3 unknown.");
    for (const SourceResult &result : results) {
        out += "lanternic_source_health{id=" + label(result.id) + ",name=" + label(result.name) +
               "} " + QByteArray::number(monitoringCode(result.health)) + '\n';
    }
    family(out, "lanternic_component_health", "gauge",
           "Health of each component: 0 operational, 1 degraded, 2 down, 3 unknown.");
    for (const SourceResult &result : results) {
        for (const ComponentStatus &component : result.components) {
            out += "lanternic_component_health{source=" + label(result.id) +
                   ",id=" + label(component.id) + ",name=" + label(component.name) + "} " +
                   QByteArray::number(monitoringCode(component.health)) + '\n';
        }
    }
    family(out, "lanternic_source_up", "gauge",
           "1 when the last check reached and read the source's page.");
    for (const SourceResult &result : results) {
        out +=
            "lanternic_source_up{id=" + label(result.id) + "} " + (result.error ? "0" : "1") + '\n';
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
