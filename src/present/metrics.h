#pragma once

#include <QByteArray>
#include <QDateTime>
#include <optional>

namespace lanternic {

class LanternicStore;

// What the watcher's forwarding has done since it started.
struct ForwardCounts {
    qint64 dropped = 0;  // left out of a full outbox, oldest first
    qint64 failures = 0; // deliveries that did not get a 2xx answer
    qsizetype pending = 0;

    bool operator==(const ForwardCounts &) const = default;
};

// What the watcher knows of its own passes.
struct PassStatistics {
    qint64 passes = 0;
    std::optional<QDateTime> lastPass;
    double lastDurationSeconds = 0;
    ForwardCounts forwarding;
};

// The latest pass in Prometheus' text exposition format 0.0.4.
QByteArray prometheusMetrics(const LanternicStore &store, const PassStatistics &statistics);

} // namespace lanternic
