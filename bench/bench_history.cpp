// Saving the check history at the end of a pass: 1,000 sources with 40 ticks each. The health
// log: recording a pass over 1,000 sources in which nothing changed (which writes nothing),
// and the log of 100 sources after 90 days in which one of them failed and recovered every
// hour: its size, and how long loading it takes.

#include "store/checkhistory.h"
#include "store/healthlog.h"

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

void RecordUnchangedPass(benchmark::State &state)
{
    HealthLog log;
    QDateTime now = QDateTime::fromSecsSinceEpoch(1'795'000'000, Qt::UTC);
    QStringList ids;
    for (int id = 0; id < 1000; ++id) {
        ids.append(QStringLiteral("status.example%1.com/team").arg(id));
        log.record(ids.last(), Health::operational, {}, now, std::nullopt);
    }
    bool changed = false;
    for (auto _ : state) {
        const QDateTime previous = now;
        now = now.addSecs(120);
        for (const QString &id : std::as_const(ids))
            changed = log.record(id, Health::operational, {}, now, previous) || changed;
        changed = log.trim(now) || changed;
    }
    if (changed)
        state.SkipWithError("a pass in which nothing changed changed the log");
}

// 100 sources; one goes down and comes back every hour for 90 days.
HealthLog flakyQuarter()
{
    HealthLog log;
    const QDateTime start = QDateTime::fromSecsSinceEpoch(1'795'000'000, Qt::UTC);
    for (int id = 0; id < 100; ++id)
        log.record(QStringLiteral("status.example%1.com/team").arg(id), Health::operational, {},
                   start, std::nullopt);
    const QString flaky = QStringLiteral("status.example0.com/team");
    for (int half = 1; half < 90 * 24 * 2; ++half) {
        const QDateTime at = start.addSecs(half * 1800);
        log.record(flaky, half % 2 ? Health::down : Health::operational,
                   half % 2 ? QStringList{QStringLiteral("Elevated error rates")} : QStringList(),
                   at, at.addSecs(-120));
    }
    return log;
}

void LoadQuarterLog(benchmark::State &state)
{
    QTemporaryDir dir;
    QSettings defaults(dir.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    const HealthLog log = flakyQuarter();
    log.save(defaults);
    for (auto _ : state)
        benchmark::DoNotOptimize(HealthLog::load(defaults));
    if (!(HealthLog::load(defaults) == std::optional(log)))
        state.SkipWithError("the log did not read back");
    state.counters["bytes"] = double(log.encode().size());
    state.counters["changes"] =
        double(log.byId.value(QStringLiteral("status.example0.com/team")).size());
}

} // namespace

BENCHMARK(RecordUnchangedPass)->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadQuarterLog)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveHistory)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveAndFlushHistory)->Unit(benchmark::kMillisecond);
BENCHMARK(EncodeHistory)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
