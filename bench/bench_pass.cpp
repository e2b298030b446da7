// One whole check pass over many sources served on loopback, as the app runs it.
// Prints the pass's wall time and the process's resident memory before and at its peak.

#include "processstats.h"
#include "store/appenvironment.h"

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
    AppEnvironment environment(defaults);
    const long idle = residentKilobytes();
    QElapsedTimer timer;
    double cpuAtStart = 0;
    QObject::connect(environment.store.get(), &LanternicStore::isRefreshingChanged, [&] {
        if (environment.store->isRefreshing()) {
            timer.start();
            cpuAtStart = cpuSeconds();
        }
    });
    int failed = 0;
    QObject::connect(environment.store.get(), &LanternicStore::passFinished, [&] {
        const double seconds = double(timer.nsecsElapsed()) / 1e9;
        for (const SourceResult &result : environment.store->results())
            failed += result.error ? 1 : 0;
        std::printf(
            "sources %lld failed %d pass_seconds %.3f pass_cpu_seconds %.3f idle_rss_kb %ld "
            "peak_rss_kb %ld\n",
            qlonglong(lines.size()), failed, seconds, cpuSeconds() - cpuAtStart, idle,
            peakResidentKilobytes());
        QCoreApplication::exit(failed == 0 ? 0 : 1);
    });
    return QCoreApplication::exec();
}
