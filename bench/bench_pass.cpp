// One whole check pass over many sources served on loopback, as the app runs it.
// Prints the pass's wall time, when the last result of a source that answers was published
// (sources whose URL says "silent" never answer), and the process's resident memory before
// and at its peak.

#include "environment/appenvironment.h"
#include "processstats.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <cstdio>

using namespace lanternic;

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: bench_pass PORT URL-LIST\n");
        return 2;
    }
    QFile list(QString::fromLocal8Bit(argv[2]));
    if (!list.open(QIODevice::ReadOnly))
        return 2;
    QStringList lines;
    for (const QByteArray &url : list.readAll().split('\n')) {
        if (!url.isEmpty())
            lines.append(QStringLiteral("S%1=%2").arg(lines.size()).arg(QString::fromUtf8(url)));
    }

    QTemporaryDir dir;
    QSettings defaults(dir.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    defaults.setValue(QStringLiteral("Lanternic.sources"), lines.join(u'\n'));
    // Written now, or QSettings writes it from the event loop while the pass runs.
    defaults.sync();
    AppEnvironment environment(defaults, {}, AppEnvironment::LaunchPass::once);
    const long idle = residentKilobytes();
    QElapsedTimer timer;
    CpuSeconds cpuAtStart;
    QObject::connect(environment.store.get(), &LanternicStore::isRefreshingChanged, [&] {
        if (environment.store->isRefreshing()) {
            timer.start();
            cpuAtStart = cpuTimes();
        }
    });
    const qsizetype silent = lines.filter(QStringLiteral("silent")).size();
    double lastAnswered = 0;
    qsizetype changes = 0;
    QObject::connect(environment.store.get(), &LanternicStore::resultsChanged, [&] {
        if (lastAnswered > 0 || !timer.isValid())
            return;
        const QList<SourceResult> &results = environment.store->results();
        // Each answer changes the rows once: until there have been as many changes, some are
        // still to come, and a walk over the rows on every change would cost the benchmark
        // itself a time that grows with the square of the sources.
        if (++changes < results.size() - silent)
            return;
        const auto answered = std::count_if(results.begin(), results.end(), [](const auto &r) {
            return !r.error && r.detail != QStringLiteral("Checking\u2026");
        });
        if (answered == results.size() - silent)
            lastAnswered = double(timer.nsecsElapsed()) / 1e9;
    });
    int failed = 0;
    QObject::connect(environment.store.get(), &LanternicStore::passFinished, [&] {
        const double seconds = double(timer.nsecsElapsed()) / 1e9;
        for (const SourceResult &result : environment.store->results())
            failed += result.error ? 1 : 0;
        const CpuSeconds cpu = cpuTimes();
        std::printf(
            "sources %lld silent %lld failed %d last_answered_seconds %.3f pass_seconds %.3f "
            "pass_cpu_seconds %.3f pass_user_seconds %.3f pass_system_seconds %.3f "
            "idle_rss_kb %ld peak_rss_kb %ld\n",
            qlonglong(lines.size()), qlonglong(silent), failed, lastAnswered, seconds,
            cpu.total() - cpuAtStart.total(), cpu.user - cpuAtStart.user,
            cpu.system - cpuAtStart.system, idle, peakResidentKilobytes());
        QCoreApplication::exit(failed == silent ? 0 : 1);
    });
    return QCoreApplication::exec();
}
