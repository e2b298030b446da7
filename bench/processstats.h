#pragma once

// What the benchmarks measure of their own process.

#include <QByteArray>
#include <QFile>
#include <sys/resource.h>

inline long residentKilobytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return -1;
}

inline long peakResidentKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// CPU time so far, in user space and in the kernel.
struct CpuSeconds {
    double user = 0;
    double system = 0;
    double total() const { return user + system; }
};

inline CpuSeconds cpuTimes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    auto seconds = [](const timeval &t) { return double(t.tv_sec) + double(t.tv_usec) / 1e6; };
    return {seconds(usage.ru_utime), seconds(usage.ru_stime)};
}

inline double cpuSeconds()
{
    return cpuTimes().total();
}
