#include "present/metrics.h"

#include "model/feedtext.h"
#include "store/lanternicstore.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace lanternic {

namespace {

// Appends one sample: name{label="value",…} value. Label values are feed text cleaned and
// capped, which has turned line breaks into spaces already; of what the format escapes, that
// leaves backslashes and quotes.
void sample(QByteArray &out, const char *name,
            std::initializer_list<std::pair<const char *, QStringView>> labels, int value)
{
    out += name;
    char separator = '{';
    for (const auto &[label, text] : labels) {
        out += separator;
        out += label;
        out += "=\"";
        // Copied in runs between the characters escaped: appending byte by byte was a tenth
        // of a watcher's instructions at a thousand sources.
        const QByteArray cleaned = FeedText::clean(text, 200).toUtf8();
        qsizetype from = 0;
        for (qsizetype i = 0; i < cleaned.size(); ++i) {
            if (cleaned[i] == '\\' || cleaned[i] == '"') {
                out.append(cleaned.constData() + from, i - from);
                out += '\\';
                from = i;
            }
        }
        out.append(cleaned.constData() + from, cleaned.size() - from);
        out += '"';
        separator = ',';
    }
    out += "} ";
    out += QByteArray::number(value);
    out += '\n';
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
    family(out, "lanternic_source_health", "gauge",
           "Health of each source: 0 operational, 1 degraded, 2 down, 3 unknown.");
    for (const SourceResult &result : results) {
        sample(out, "lanternic_source_health", {{"id", result.id}, {"name", result.name}},
               monitoringCode(result.health));
    }
    family(out, "lanternic_component_health", "gauge",
           "Health of each component: 0 operational, 1 degraded, 2 down, 3 unknown.");
    for (const SourceResult &result : results) {
        // The source label already names the source, so the id is the feed's own key.
        const QString prefix = result.id + "::"_L1;
        for (const ComponentStatus &component : result.components) {
            const QString whole = component.id.toString();
            const QStringView id = QStringView(whole).startsWith(prefix)
                                       ? QStringView(whole).sliced(prefix.size())
                                       : QStringView(whole);
            sample(out, "lanternic_component_health",
                   {{"source", result.id}, {"id", id}, {"name", component.name}},
                   monitoringCode(component.health));
        }
    }
    family(out, "lanternic_source_up", "gauge",
           "1 when the last check reached and read the source's page.");
    for (const SourceResult &result : results)
        sample(out, "lanternic_source_up", {{"id", result.id}}, result.error ? 0 : 1);
    family(out, "lanternic_source_incidents", "gauge",
           "Incidents the source's page reports as open.");
    for (const SourceResult &result : results)
        sample(out, "lanternic_source_incidents", {{"id", result.id}},
               int(result.incidents.size()));
    family(out, "lanternic_source_maintenance", "gauge",
           "1 while a maintenance window of the source's page is in progress.");
    const QDateTime now = store.now();
    for (const SourceResult &result : results) {
        const bool inProgress =
            std::any_of(result.maintenances.begin(), result.maintenances.end(),
                        [&now](const Maintenance &window) { return window.isInProgress(now); });
        sample(out, "lanternic_source_maintenance", {{"id", result.id}}, inProgress ? 1 : 0);
    }
    family(out, "lanternic_last_pass_timestamp_seconds", "gauge",
           "When the last check pass finished, in seconds since the Unix epoch.");
    out += "lanternic_last_pass_timestamp_seconds " +
           QByteArray::number(statistics.lastPass
                                  ? double(statistics.lastPass->toMSecsSinceEpoch()) / 1000.0
                                  : 0.0,
                              'f', 3) +
           '\n';
    family(out, "lanternic_poll_interval_seconds", "gauge", "The wait between check passes.");
    out += "lanternic_poll_interval_seconds " +
           QByteArray::number(
               std::chrono::duration_cast<std::chrono::seconds>(store.pollInterval()).count()) +
           '\n';
    family(out, "lanternic_pass_duration_seconds", "gauge", "How long the last check pass took.");
    out += "lanternic_pass_duration_seconds " +
           QByteArray::number(statistics.lastDurationSeconds, 'f', 6) + '\n';
    const ForwardCounts &forwarding = statistics.forwarding;
    family(out, "lanternic_forward_pending", "gauge",
           "Forwarded messages waiting in the outbox for their receiver.");
    out += "lanternic_forward_pending " + QByteArray::number(forwarding.pending) + '\n';
    family(out, "lanternic_forward_failures_total", "counter",
           "Deliveries of forwarded messages that failed, to be retried.");
    out += "lanternic_forward_failures_total " + QByteArray::number(forwarding.failures) + '\n';
    family(out, "lanternic_forward_dropped_total", "counter",
           "Forwarded messages dropped, oldest first, from a full outbox.");
    out += "lanternic_forward_dropped_total " + QByteArray::number(forwarding.dropped) + '\n';
    family(out, "lanternic_passes_total", "counter", "Check passes finished since start.");
    out += "lanternic_passes_total " + QByteArray::number(statistics.passes) + '\n';
    return out;
}

} // namespace lanternic
