#include "ui/widgets/historysparkline.h"

#include "ui/widgets/theme.h"

#include <QPainter>

namespace lanternic {

using namespace Qt::StringLiterals;

HistorySparkline::HistorySparkline(const QList<HealthTick> &ticks, QWidget *parent)
    : QWidget(parent)
{
    setFixedSize(72, 16);
    setAccessibleName(tr("No history yet"));
    setTicks(ticks);
}

void HistorySparkline::setTicks(const QList<HealthTick> &ticks)
{
    const QList<HealthTick> shown = ticks.mid(std::max<qsizetype>(0, ticks.size() - maximumBars));
    if (shown == m_ticks)
        return;
    m_ticks = shown;
    // Named from what it shows: "History: 16 operational, 2 degraded".
    QStringList counts;
    for (Health health : {Health::operational, Health::degraded, Health::down, Health::unknown}) {
        const qsizetype count = bars().count(health);
        if (count > 0)
            counts.append(tr("%1 %2").arg(count).arg(stateWord(health)));
    }
    setAccessibleName(counts.isEmpty() ? tr("No history yet")
                                       : tr("History: %1").arg(counts.join(tr(", "))));
    update();
}

QList<Health> HistorySparkline::bars() const
{
    QList<Health> healths;
    for (const HealthTick &tick : m_ticks)
        healths.append(healthFromRawValue(tick.healthRaw).value_or(Health::unknown));
    return healths;
}

void HistorySparkline::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_ticks.isEmpty()) {
        painter.setPen(Theme::tertiaryText(palette()));
        painter.setFont(Theme::font(11));
        painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter, u"\u2014"_s);
        return;
    }
    const QList<Health> healths = bars();
    const qreal barWidth = 3, gap = 1;
    qreal x = width() - (healths.size() * barWidth + (healths.size() - 1) * gap);
    painter.setPen(Qt::NoPen);
    for (Health health : healths) {
        painter.setBrush(Theme::healthColor(health, palette()));
        painter.drawRoundedRect(QRectF(x, 0, barWidth, height()), 1, 1);
        x += barWidth + gap;
    }
}

} // namespace lanternic
