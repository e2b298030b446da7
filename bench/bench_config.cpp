// Turning a sources text into sources, and reading each line for the settings window's notes,
// which it does on every edit: 10,000 lines, all the same (every id needs a repeat suffix) or
// all different.

#include "config/sourceregistry.h"

#include <benchmark/benchmark.h>

using namespace lanternic;

namespace {

void sourcesOf(benchmark::State &state, const QString &text)
{
    for (auto _ : state) {
        QList<JSONSource> sources = SourceRegistry::sources(text, {});
        benchmark::DoNotOptimize(sources);
    }
}

QString repeatedLines(qsizetype count)
{
    QStringList lines;
    for (qsizetype i = 0; i < count; ++i)
        lines.append(QStringLiteral("GitHub=www.githubstatus.com"));
    return lines.join(u'\n');
}

QString distinctLines(qsizetype count)
{
    QStringList lines;
    for (qsizetype i = 0; i < count; ++i)
        lines.append(QStringLiteral("S%1=status%1.example.com").arg(i));
    return lines.join(u'\n');
}

void RepeatedLines(benchmark::State &state)
{
    sourcesOf(state, repeatedLines(state.range(0)));
}

void DistinctLines(benchmark::State &state)
{
    sourcesOf(state, distinctLines(state.range(0)));
}

void LineNotes(benchmark::State &state)
{
    const QString text =
        state.range(1) ? distinctLines(state.range(0)) : repeatedLines(state.range(0));
    for (auto _ : state) {
        QList<LineReading> readings = SourceRegistry::readLines(text, {});
        benchmark::DoNotOptimize(readings);
    }
}

} // namespace

BENCHMARK(RepeatedLines)->Arg(10000)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(DistinctLines)->Arg(10000)->Unit(benchmark::kMillisecond);
// Arguments: lines, and whether they differ.
BENCHMARK(LineNotes)->Args({10000, 0})->Args({10000, 1})->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
