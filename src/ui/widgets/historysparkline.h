#pragma once

#include "store/checkhistory.h"

#include <QList>
#include <QWidget>

namespace lanternic {

// The last checks of a source as small coloured bars, newest on the right.
class HistorySparkline : public QWidget {
    Q_OBJECT

public:
    static constexpr int maximumBars = 18;

    explicit HistorySparkline(const QList<HealthTick> &ticks, QWidget *parent = nullptr);

    void setTicks(const QList<HealthTick> &ticks);

    QSize sizeHint() const override { return {72, 16}; }
    // The healths of the bars shown, oldest first; unrecognised ticks count as unknown.
    QList<Health> bars() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QList<HealthTick> m_ticks;
};

} // namespace lanternic
