#include "ui/widgets/elidedlabel.h"

#include "model/feedtext.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace lanternic {

using namespace Qt::StringLiterals;

ElidedLabel::ElidedLabel(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_color = palette().color(QPalette::WindowText);
}

void ElidedLabel::setText(const QString &text)
{
    m_text = FeedText::clean(text);
    setAccessibleName(m_text);
    updateGeometry();
    update();
}

void ElidedLabel::setColor(const QColor &color)
{
    m_color = color;
    update();
}

QSize ElidedLabel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(m_text), fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, fontMetrics().height()};
}

void tellWholeIfElided(QWidget *widget, QEvent *event, const QString &text, int width)
{
    if (widget->fontMetrics().horizontalAdvance(text) > width)
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), text, widget);
    else
        QToolTip::hideText();
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        // A text cut short shows the whole of it; a tooltip set on the label wins.
        if (toolTip().isEmpty()) {
            tellWholeIfElided(this, event, m_text, width());
            return true;
        }
    }
    return QWidget::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(m_color);
    painter.setFont(font());
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(m_text, Qt::ElideRight, width()));
}

} // namespace lanternic
