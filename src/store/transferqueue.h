#pragma once

#include <QObject>
#include <QQueue>
#include <functional>

namespace lanternic {

// Starts requests while fewer than the maximum are in flight, across all passes. Enough to
// keep any realistic source list entirely in flight, while a huge one neither runs out of
// file descriptors nor makes every event-loop turn poll thousands of sockets. Connecting costs
// the loop tens of microseconds a request, so only a few start in one turn of it: a pass over
// many sources never holds up for long what else the loop serves (the panel, or the watcher's
// clients).
class TransferQueue : public QObject {
public:
    static constexpr int maximumInFlight = 128;
    static constexpr int startsPerTurn = 8;

    using QObject::QObject;

    void enqueue(std::function<void()> start);
    // One request started from here has answered.
    void finished();

private:
    void startWaiting();

    int m_inFlight = 0;
    int m_startedThisTurn = 0;
    QQueue<std::function<void()>> m_waiting;
};

} // namespace lanternic
