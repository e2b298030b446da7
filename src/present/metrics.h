#pragma once

#include <QByteArray>
#include <QDateTime>
#include <optional>

namespace lanternic {

class LanternicStore;

// What the watcher knows of its own passes.
struct PassStatistics {
    qint64 passes = 0;
    std::optional<QDateTime> lastPass;
    double lastDurationSeconds = 0;
};

// The latest pass in Prometheus' text exposition format 0.0.4.
QByteArray prometheusMetrics(const LanternicStore &store, const PassStatistics &statistics);

} // namespace lanternic
