#include "store/transferqueue.h"

#include <QTimer>

namespace lanternic {

void TransferQueue::enqueue(std::function<void()> start)
{
    m_waiting.enqueue(std::move(start));
    startWaiting();
}

void TransferQueue::finished()
{
    --m_inFlight;
    startWaiting();
}

void TransferQueue::startWaiting()
{
    while (!m_waiting.isEmpty() && m_inFlight < maximumInFlight &&
           m_startedThisTurn < startsPerTurn) {
        if (m_startedThisTurn++ == 0) {
            QTimer::singleShot(0, this, [this] {
                m_startedThisTurn = 0;
                startWaiting();
            });
        }
        ++m_inFlight;
        const std::function<void()> start = m_waiting.dequeue();
        // A pass of thousands leaves an array as large behind it.
        if (m_waiting.isEmpty())
            m_waiting.squeeze();
        start();
    }
}

} // namespace lanternic
