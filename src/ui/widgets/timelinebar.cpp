#include "ui/widgets/timelinebar.h"

#include "present/historyreport.h"
#include "ui/widgets/theme.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

namespace lanternic {

using namespace Qt::StringLiterals;

TimelineBar::TimelineBar(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setFixedHeight(sizeHint().height());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TimelineBar::setHistory(const QList<HealthChange> &changes, const QDateTime &now,
                             const std::optional<double> &week)
{
    m_now = now;
    m_from = now.addDays(-7);
    m_stretches.clear();
    QDateTime watchedFrom = m_from;
    for (qsizetype i = 0; i < changes.size(); ++i) {
        const QDateTime from = std::max(changes[i].at, m_from);
        const QDateTime to = i + 1 < changes.size() ? std::min(changes[i + 1].at, now) : now;
        if (to <= from)
            continue;
        if (m_stretches.isEmpty() && from > m_from)
            m_stretches.append({m_from, from, std::nullopt}); // before watching began
        m_stretches.append({from, to, changes[i].health});
        watchedFrom = to;
    }
    if (m_stretches.isEmpty())
        m_stretches.append({m_from, now, std::nullopt});
    m_focused = std::min(m_focused, m_stretches.size() - 1);
    qsizetype troubles = 0;
    for (const Stretch &stretch : std::as_const(m_stretches))
        troubles += stretch.health && *stretch.health != Health::operational &&
                    *stretch.health != Health::unknown;
    setAccessibleName(
        tr("Last 7 days: %1 operational, %n stretch(es) of trouble", nullptr, int(troubles))
            .arg(uptimeText(week)));
    update();
}

QString TimelineBar::describe(const Stretch &stretch, const QDateTime &now)
{
    const Trouble window{stretch.from, stretch.to, Health::unknown, {}};
    return tr("%1, %2").arg(troubleWindowText(window, now),
                            stretch.health ? stateWord(*stretch.health) : tr("not watched"));
}

qreal TimelineBar::xOf(const QDateTime &time) const
{
    const qint64 span = std::max<qint64>(1, m_from.secsTo(m_now));
    return width() * double(m_from.secsTo(time)) / double(span);
}

qsizetype TimelineBar::stretchAt(qreal x) const
{
    for (qsizetype i = 0; i < m_stretches.size(); ++i) {
        if (x >= xOf(m_stretches[i].from) && x <= xOf(m_stretches[i].to))
            return i;
    }
    return -1;
}

bool TimelineBar::event(QEvent *event)
{
    // Its own tooltip only: the row's would otherwise show over the bar's.
    if (event->type() == QEvent::ToolTip) {
        const qsizetype index = stretchAt(static_cast<QHelpEvent *>(event)->pos().x());
        if (index >= 0)
            tell(index);
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(event);
}

void TimelineBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // Under the bar, each day's short name where its stretch of the bar has room for it.
    painter.setFont(Theme::font(9));
    painter.setPen(Theme::secondaryText(palette()));
    const QFontMetricsF metrics(painter.font());
    for (QDate day = m_from.toLocalTime().date(); day <= m_now.toLocalTime().date();
         day = day.addDays(1)) {
        const qreal left = std::max<qreal>(0, xOf(QDateTime(day, QTime(0, 0))));
        const qreal right = std::min<qreal>(width(), xOf(QDateTime(day.addDays(1), QTime(0, 0))));
        const QString name = QLocale().dayName(day.dayOfWeek(), QLocale::ShortFormat);
        if (right - left >= metrics.horizontalAdvance(name) + 2)
            painter.drawText(QRectF(left, barHeight, right - left, height() - barHeight),
                             Qt::AlignHCenter | Qt::AlignTop, name);
    }
    QPainterPath clip;
    clip.addRoundedRect(QRectF(0, 2, width(), barHeight - 4), 2, 2);
    painter.setClipPath(clip);
    const QColor tertiary = Theme::tertiaryText(palette());
    for (qsizetype i = 0; i < m_stretches.size(); ++i) {
        const Stretch &stretch = m_stretches[i];
        const QRectF area(xOf(stretch.from), 2, std::max(1.0, xOf(stretch.to) - xOf(stretch.from)),
                          barHeight - 4);
        if (!stretch.health) {
            painter.fillRect(area, QBrush(tertiary, Qt::BDiagPattern));
        } else {
            painter.fillRect(area, *stretch.health == Health::unknown
                                       ? tertiary
                                       : Theme::healthColor(*stretch.health, palette()));
        }
    }
    // A tick at each local midnight.
    QColor tick = palette().color(QPalette::Window);
    painter.setPen(QPen(tick, 1));
    for (QDateTime day = QDateTime(m_from.toLocalTime().date().addDays(1), QTime(0, 0));
         day < m_now; day = day.addDays(1))
        painter.drawLine(QPointF(xOf(day), 2), QPointF(xOf(day), barHeight - 2));
    if (hasFocus() && m_focused >= 0) {
        painter.setClipping(false);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.setBrush(Qt::NoBrush);
        const Stretch &focused = m_stretches[m_focused];
        painter.drawRect(
            QRectF(xOf(focused.from), 1, xOf(focused.to) - xOf(focused.from), barHeight - 2));
    }
}

void TimelineBar::tell(qsizetype index)
{
    if (index < 0 || index >= m_stretches.size())
        return;
    const QString text = describe(m_stretches[index], m_now);
    setAccessibleDescription(text);
    const QPoint at(int(xOf(m_stretches[index].from)), barHeight);
    QToolTip::showText(mapToGlobal(at), text, this);
}

void TimelineBar::mouseMoveEvent(QMouseEvent *event)
{
    tell(stretchAt(event->position().x()));
}

void TimelineBar::focusInEvent(QFocusEvent *event)
{
    if (m_focused < 0)
        m_focused = m_stretches.size() - 1;
    tell(m_focused);
    QWidget::focusInEvent(event);
}

void TimelineBar::keyPressEvent(QKeyEvent *event)
{
    const int step = event->key() == Qt::Key_Left ? -1 : event->key() == Qt::Key_Right ? 1 : 0;
    if (step == 0 || m_stretches.isEmpty()) {
        QWidget::keyPressEvent(event);
        return;
    }
    m_focused = std::clamp<qsizetype>(m_focused + step, 0, m_stretches.size() - 1);
    tell(m_focused);
    update();
}

} // namespace lanternic
