// Turning a sources text into sources, which the settings window does on every edit: 10,000
// lines, all the same (every id needs a repeat suffix) or all different.

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

void RepeatedLines(benchmark::State &state)
{
    QStringList lines;
    for (int i = 0; i < state.range(0); ++i)
        lines.append(QStringLiteral("GitHub=www.githubstatus.com"));
    sourcesOf(state, lines.join(u'\n'));
}

void DistinctLines(benchmark::State &state)
{
    QStringList lines;
    for (int i = 0; i < state.range(0); ++i)
        lines.append(QStringLiteral("S%1=status%1.example.com").arg(i));
    sourcesOf(state, lines.join(u'\n'));
}

} // namespace

BENCHMARK(RepeatedLines)->Arg(10000)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(DistinctLines)->Arg(10000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
