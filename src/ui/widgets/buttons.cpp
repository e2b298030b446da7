#include "ui/widgets/buttons.h"

#include "ui/widgets/elidedlabel.h"
#include "ui/widgets/symbols.h"
#include "ui/widgets/theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTimer>

namespace lanternic {

using namespace Qt::StringLiterals;

void PaneButton::keyPressEvent(QKeyEvent *event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        !(event->modifiers() & ~Qt::KeypadModifier)) {
        animateClick();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void PaneButton::paintFocusRing(QPainter &painter, const QRectF &area, qreal radius) const
{
    if (!hasFocus())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(area, radius, radius);
    painter.restore();
}

MenuActionRow::MenuActionRow(const QString &title, const QString &systemImage, QWidget *parent)
    : PaneButton(parent), m_systemImage(systemImage)
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

QRect MenuActionRow::textArea() const
{
    return rect().adjusted(12 + 16 + 8, 0, -12, 0);
}

bool MenuActionRow::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        tellWholeIfElided(this, event, text(), textArea().width());
        return true;
    }
    return PaneButton::event(event);
}

void MenuActionRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (underMouse() || hasFocus())
        painter.fillRect(rect(), Theme::accent(palette(), 0.15));
    paintFocusRing(painter, QRectF(rect()).adjusted(3, 1, -3, -1), 5);
    const QColor color = palette().color(QPalette::WindowText);
    const qreal symbolSize = 13;
    Symbols::paint(
        painter, m_systemImage,
        QRectF(12 + (16 - symbolSize) / 2, (height() - symbolSize) / 2, symbolSize, symbolSize),
        color);
    painter.setPen(color);
    const QRect area = textArea();
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideRight, area.width()));
}

TextButton::TextButton(const QString &text, QWidget *parent) : PaneButton(parent)
{
    setText(text);
    setAccessibleName(text);
    setFont(Theme::font(12));
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize TextButton::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(text()) + 6, fontMetrics().height() + 4};
}

void TextButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Link));
    painter.drawText(rect(), Qt::AlignCenter, text());
    paintFocusRing(painter, QRectF(rect()).adjusted(1, 1, -1, -1), 3);
}

RefreshButton::RefreshButton(QWidget *parent) : PaneButton(parent)
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
    paintFocusRing(painter, QRectF(rect()).adjusted(1, 1, -1, -1), 10);
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
