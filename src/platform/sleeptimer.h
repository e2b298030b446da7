#pragma once

#include <QObject>
#include <chrono>
#include <memory>

namespace lanternic {

// A single-shot timer on a clock that keeps counting while the computer sleeps, so that a
// laptop waking after the interval has passed fires at once. Each platform has its own
// implementation, chosen by the build.
class SleepTimer : public QObject {
    Q_OBJECT

public:
    explicit SleepTimer(QObject *parent = nullptr);
    ~SleepTimer() override;

    // Starts, or restarts, the wait.
    void start(std::chrono::milliseconds interval);
    void stop();
    bool isActive() const;

Q_SIGNALS:
    void timeout();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace lanternic
