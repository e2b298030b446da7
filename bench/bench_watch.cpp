// The watcher under way: its memory over many passes, and how it serves while passes run.
//
//   bench_watch memory PORT SOURCES PASSES   passes back to back over loopback sources (served
//                                           by pass_server on PORT); resident memory after 10
//                                           passes and after all of them
//   bench_watch serve PORT SOURCES SECONDS   the watcher on 127.0.0.1:PORT+1 starting a pass
//                                           every 2 s for SECONDS; prints how late each pass
//                                           started (the lag of the event loop) while a load
//                                           generator asks it for /metrics and /lanternic.json

#include "environment/appenvironment.h"
#include "processstats.h"
#include "serve/watchserver.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>

using namespace lanternic;

namespace {

QString sourcesText(int port, int count)
{
    QStringList lines;
    for (int i = 0; i < count; ++i)
        lines.append(QStringLiteral("S%1=http://127.0.%2.%3:%4/feed%1.json")
                         .arg(i)
                         .arg(i / 250)
                         .arg(i % 250 + 1)
                         .arg(port));
    return lines.join(u'\n');
}

} // namespace

int main(int argc, char **argv)
{
    preferLeanEventDispatcher();
    QCoreApplication app(argc, argv);
    if (argc != 5) {
        std::fprintf(stderr, "usage: bench_watch memory|serve PORT SOURCES PASSES|SECONDS\n");
        return 2;
    }
    const QByteArray mode = argv[1];
    const int port = QByteArray(argv[2]).toInt();
    const int sources = QByteArray(argv[3]).toInt();
    const int amount = QByteArray(argv[4]).toInt();

    QTemporaryDir dir;
    QSettings defaults(dir.filePath(QStringLiteral("watch.ini")), QSettings::IniFormat);
    defaults.setValue(QStringLiteral("Lanternic.sources"), sourcesText(port, sources));
    AppEnvironment environment(defaults, {}, AppEnvironment::LaunchPass::none);
    LanternicStore &store = *environment.store;
    WatchServer server(store, QStringLiteral("Bench"));

    if (mode == "memory") {
        int passes = 0;
        long afterTen = 0;
        std::function<void()> next = [&] {
            if (++passes == 10)
                afterTen = residentKilobytes();
            if (passes == amount) {
                const long end = residentKilobytes();
                std::printf("passes %d sources %d rss_after_10_kb %ld rss_after_%d_kb %ld "
                            "growth_kb %ld\n",
                            amount, sources, afterTen, amount, end, end - afterTen);
                QCoreApplication::quit();
                return;
            }
            store.refresh(next);
        };
        store.refresh(next);
        return QCoreApplication::exec();
    }

    if (server.listen(QHostAddress::LocalHost, quint16(port + 1)) == 0)
        return 1;
    std::vector<qint64> lags;
    QElapsedTimer clock;
    clock.start();
    qint64 due = 0;
    QTimer passes;
    passes.setTimerType(Qt::PreciseTimer);
    passes.setInterval(2000);
    QObject::connect(&passes, &QTimer::timeout, [&] {
        lags.push_back(std::max<qint64>(0, clock.elapsed() - due));
        due = clock.elapsed() + 2000;
        store.refresh();
    });
    store.refresh([&] {
        std::printf("ready\n");
        std::fflush(stdout);
        due = clock.elapsed() + 2000;
        passes.start();
    });
    // What the connections hold: the most open at once, and the most memory meanwhile.
    int mostOpen = 0;
    long mostResident = 0;
    QTimer sample;
    QObject::connect(&sample, &QTimer::timeout, [&] {
        mostOpen = std::max(mostOpen, server.front().openConnections());
        mostResident = std::max(mostResident, residentKilobytes());
    });
    sample.start(100);
    QTimer::singleShot(amount * 1000, [&] {
        const qint64 worst = lags.empty() ? 0 : *std::max_element(lags.begin(), lags.end());
        std::printf("passes %zu worst_pass_lag_ms %lld served_passes %lld cpu_seconds %.2f "
                    "most_open_connections %d most_rss_kb %ld\n",
                    lags.size(), qlonglong(worst), qlonglong(server.statistics().passes),
                    cpuSeconds(), mostOpen, mostResident);
        QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}
