#include "app/panelwindow.h"

#include "ui/lanternicpane.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QVBoxLayout>

namespace lanternic {

PanelWindow::PanelWindow(LanternicPane *pane, QWidget *parent)
    : QWidget(parent, Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint),
      m_pane(pane)
{
    setWindowTitle(QStringLiteral("Lanternic"));
    setAttribute(Qt::WA_TranslucentBackground);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(pane);
    resize(pane->sizeHint());
    connect(pane, &LanternicPane::heightChanged, this, [this] {
        resize(m_pane->sizeHint());
        place();
    });
}

QPoint PanelWindow::placement(QPointF anchorTopCenter, QSize size, std::optional<QRect> available)
{
    qreal x = anchorTopCenter.x() - size.width() / 2.0;
    if (available) {
        x = std::max<qreal>(x, available->left() + 4);
        const qreal rightLimit = available->left() + available->width() - size.width() - 4;
        if (rightLimit < x)
            x = rightLimit;
    }
    return QPoint(qRound(x), qRound(anchorTopCenter.y()));
}

void PanelWindow::showAt(QPointF anchorTopCenter)
{
    m_anchor = anchorTopCenter;
    resize(m_pane->sizeHint());
    place();
    show();
    raise();
}

void PanelWindow::place()
{
    const QScreen *screen = QGuiApplication::screenAt(m_anchor.toPoint());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    move(placement(m_anchor, size(),
                   screen ? std::optional<QRect>(screen->availableGeometry()) : std::nullopt));
}

void PanelWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 12, 12);
    QColor background = palette().color(QPalette::Window);
    background.setAlphaF(0.97);
    painter.fillPath(shape, background);
    QColor edge = palette().color(QPalette::WindowText);
    edge.setAlphaF(0.15);
    painter.setPen(edge);
    painter.drawPath(shape);
}

void PanelWindow::hideEvent(QHideEvent *)
{
    Q_EMIT hidden();
}

} // namespace lanternic
