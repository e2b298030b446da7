#pragma once

#include "store/healthlog.h"

#include <QDateTime>
#include <QList>
#include <QWidget>
#include <optional>

namespace lanternic {

// Seven days of a source's health as a bar: health colours over time, gaps hatched, a tick at
// each local midnight. Hovering over or moving the focus along (←, →) a stretch tells its
// times and health; its accessible name says what the bar shows.
class TimelineBar : public QWidget {
    Q_OBJECT

public:
    struct Stretch {
        QDateTime from;
        QDateTime to;
        std::optional<Health> health; // nothing: not watched
    };

    explicit TimelineBar(QWidget *parent = nullptr);

    void setHistory(const QList<HealthChange> &changes, const QDateTime &now,
                    const std::optional<double> &week);
    const QList<Stretch> &stretches() const { return m_stretches; }
    // "Tue 14:02–15:10, down".
    static QString describe(const Stretch &stretch, const QDateTime &now);

    // The bar, and the days' names under it.
    static constexpr int barHeight = 14;
    QSize sizeHint() const override { return {250, barHeight + 12}; }

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    qsizetype stretchAt(qreal x) const;
    qreal xOf(const QDateTime &time) const;
    void tell(qsizetype index);

    QList<Stretch> m_stretches;
    QDateTime m_from, m_now;
    qsizetype m_focused = -1;
};

} // namespace lanternic
