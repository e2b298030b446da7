#include "ui/panecontrols.h"

#include "ui/symbols.h"
#include "ui/theme.h"

#include <QPainter>
#include <QTimer>

namespace lanternic {

using namespace Qt::StringLiterals;

MenuActionRow::MenuActionRow(const QString &title, const QString &systemImage, QWidget *parent)
    : QAbstractButton(parent), m_systemImage(systemImage)
{
    setText(title);
    setAccessibleName(title);
    setFont(Theme::font(13));
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize MenuActionRow::sizeHint() const
{
    return {320, fontMetrics().height() + 10};
}

void MenuActionRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (underMouse())
        painter.fillRect(rect(), Theme::accent(palette(), 0.15));
    const QColor color = palette().color(QPalette::WindowText);
    const qreal symbolSize = 13;
    Symbols::paint(
        painter, m_systemImage,
        QRectF(12 + (16 - symbolSize) / 2, (height() - symbolSize) / 2, symbolSize, symbolSize),
        color);
    painter.setPen(color);
    painter.drawText(rect().adjusted(12 + 16 + 8, 0, -12, 0), Qt::AlignLeft | Qt::AlignVCenter,
                     text());
}

RefreshButton::RefreshButton(QWidget *parent) : QAbstractButton(parent)
{
    setFixedSize(22, 22);
    setAttribute(Qt::WA_Hover);
    setAccessibleName(tr("Refresh"));
    setToolTip(tr("Refresh"));
    setCursor(Qt::PointingHandCursor);
}

void RefreshButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool hovering = underMouse();
    if (hovering) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::accent(palette(), 0.15));
        painter.drawEllipse(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
    const QColor color =
        hovering ? palette().color(QPalette::WindowText) : Theme::secondaryText(palette());
    Symbols::paint(painter, u"arrow.clockwise"_s, QRectF(5, 5, 12, 12), color);
}

bool RefreshButton::hitButton(const QPoint &pos) const
{
    const QPointF offset = QPointF(pos) - QRectF(rect()).center();
    return std::hypot(offset.x(), offset.y()) <= width() / 2.0;
}

Spinner::Spinner(QWidget *parent) : QWidget(parent), m_timer(new QTimer(this))
{
    setFixedSize(22, 22);
    setAccessibleName(tr("Refreshing"));
    m_timer->setInterval(80);
    connect(m_timer, &QTimer::timeout, this, [this] {
        m_step = (m_step + 1) % 12;
        update();
    });
}

void Spinner::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    QColor color = Theme::secondaryText(palette());
    for (int i = 0; i < 12; ++i) {
        color.setAlphaF(0.15 + 0.85 * ((i + 12 - m_step) % 12) / 11.0);
        painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -4), QPointF(0, -7));
        painter.rotate(30);
    }
}

void Spinner::showEvent(QShowEvent *)
{
    m_timer->start();
}

void Spinner::hideEvent(QHideEvent *)
{
    m_timer->stop();
}

} // namespace lanternic
