#include "app/panelwindow.h"

#include "platform/windowsystem.h"
#include "ui/lanternicpane.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QVBoxLayout>

namespace lanternic {

namespace {
constexpr qreal cornerRadius = 12;
constexpr int shadowSpread = 14;
constexpr int shadowDrop = 4;
} // namespace

namespace {

// A popup grabs the pointer and closes at a click anywhere else. Under Wayland a popup needs a
// window of ours to hang from, and a tray icon is not one: there the panel is a frameless
// window the compositor places, which closes when it loses focus.
Qt::WindowFlags panelFlags()
{
    const Qt::WindowFlags kind = WindowSystem::placesWindows() ? Qt::Popup : Qt::Window;
    return kind | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint;
}

} // namespace

PanelWindow::PanelWindow(LanternicPane *pane, QWidget *parent)
    : QWidget(parent, panelFlags()), m_pane(pane)
{
    setWindowTitle(QStringLiteral("Lanternic"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(pane);
    pane->installEventFilter(this);
    setComposited(WindowSystem::compositing());
    connect(pane, &LanternicPane::heightChanged, this, [this] {
        fit();
        place();
    });
}

QMargins PanelWindow::shadowMargins() const
{
    if (!m_composited)
        return {};
    return {shadowSpread, shadowSpread - shadowDrop, shadowSpread, shadowSpread + shadowDrop};
}

QRect PanelWindow::panelRect() const
{
    return rect().marginsRemoved(shadowMargins());
}

void PanelWindow::setComposited(bool composited)
{
    m_composited = composited;
    // Translucency is chosen when the native window is made, so a change of compositor
    // makes it anew.
    if (testAttribute(Qt::WA_WState_Created) &&
        testAttribute(Qt::WA_TranslucentBackground) != composited)
        destroy();
    setAttribute(Qt::WA_TranslucentBackground, composited);
    // The plain panel's border sits outside the pane, so no row covers it.
    layout()->setContentsMargins(composited ? shadowMargins() : QMargins(1, 1, 1, 1));
    cutCorners();
    fit();
}

void PanelWindow::fit()
{
    resize(m_pane->sizeHint().grownBy(layout()->contentsMargins()));
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
    if (WindowSystem::compositing() != m_composited)
        setComposited(!m_composited);
    fit();
    place();
    show();
    raise();
    activateWindow();
}

bool PanelWindow::event(QEvent *event)
{
    if (!testAttribute(Qt::WA_WState_Visible) || windowType() == Qt::Popup)
        return QWidget::event(event);
    const bool escape = event->type() == QEvent::KeyPress &&
                        static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (escape || event->type() == QEvent::WindowDeactivate) {
        hide();
        return true;
    }
    return QWidget::event(event);
}

void PanelWindow::place()
{
    const QScreen *screen = QGuiApplication::screenAt(m_anchor.toPoint());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect panel = panelRect();
    move(placement(m_anchor, panel.size(),
                   screen ? std::optional<QRect>(screen->availableGeometry()) : std::nullopt) -
         panel.topLeft());
}

bool PanelWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_pane && event->type() == QEvent::Resize)
        cutCorners();
    return QWidget::eventFilter(watched, event);
}

void PanelWindow::cutCorners()
{
    // The pane's corners are cut to the panel's; its hover fills would poke out otherwise.
    if (!m_composited) {
        m_pane->clearMask();
        return;
    }
    QPainterPath corners;
    corners.addRoundedRect(QRectF(m_pane->rect()), cornerRadius, cornerRadius);
    m_pane->setMask(QRegion(corners.toFillPolygon().toPolygon()));
}

void PanelWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor background = palette().color(QPalette::Window);
    QColor edge = palette().color(QPalette::WindowText);
    edge.setAlphaF(0.15);
    if (!m_composited) {
        painter.fillRect(rect(), background);
        painter.setPen(edge);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF panel = QRectF(rect()).marginsRemoved(shadowMargins());
    // A soft shadow: rings of falling opacity around the panel, a little lower than it.
    painter.setPen(Qt::NoPen);
    for (int ring = shadowSpread; ring > 0; --ring) {
        const qreal fade = 1.0 - qreal(ring) / shadowSpread;
        painter.setBrush(QColor(0, 0, 0, qRound(24 * fade * fade)));
        painter.drawRoundedRect(panel.adjusted(-ring, -ring + shadowDrop, ring, ring + shadowDrop),
                                cornerRadius + ring, cornerRadius + ring);
    }
    QPainterPath shape;
    shape.addRoundedRect(panel.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillPath(shape, background);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setPen(edge);
    painter.drawPath(shape);
}

void PanelWindow::hideEvent(QHideEvent *)
{
    Q_EMIT hidden();
}

} // namespace lanternic
