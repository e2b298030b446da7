// Saving the check history at the end of a pass: 1,000 sources with 40 ticks each.

#include "store/checkhistory.h"

#include <QSettings>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

using namespace lanternic;

namespace {

CheckHistory fullHistory()
{
    CheckHistory history;
    const QDateTime start = QDateTime::fromSecsSinceEpoch(1'795'000'000, Qt::UTC);
    for (int id = 0; id < 1000; ++id) {
        const QString key = QStringLiteral("status.example%1.com/team").arg(id);
        for (int tick = 0; tick < CheckHistory::maximumTicks; ++tick)
            history.record(key, tick % 7 ? Health::operational : Health::degraded,
                           start.addMSecs(tick * 120'037));
    }
    return history;
}

// What a pass does: encode and hand the bytes to the settings object.
void SaveHistory(benchmark::State &state)
{
    const CheckHistory history = fullHistory();
    QTemporaryDir dir;
    QSettings defaults(dir.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    for (auto _ : state)
        history.save(defaults);
    state.counters["bytes"] = double(history.encode().size());
}

// The same, with the settings object writing its file to disk as well, as it soon does.
void SaveAndFlushHistory(benchmark::State &state)
{
    const CheckHistory history = fullHistory();
    QTemporaryDir dir;
    QSettings defaults(dir.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    for (auto _ : state) {
        history.save(defaults);
        defaults.sync();
    }
}

void EncodeHistory(benchmark::State &state)
{
    const CheckHistory history = fullHistory();
    for (auto _ : state)
        benchmark::DoNotOptimize(history.encode());
}

} // namespace

BENCHMARK(SaveHistory)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveAndFlushHistory)->Unit(benchmark::kMillisecond);
BENCHMARK(EncodeHistory)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
