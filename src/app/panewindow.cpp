#include "app/panewindow.h"

#include "ui/lanternicpane.h"

#include <QVBoxLayout>
#include <QWindow>

namespace lanternic {

PaneWindow::PaneWindow(LanternicPane *pane, QWidget *parent) : QWidget(parent, Qt::Window)
{
    setWindowTitle(QStringLiteral("Lanternic"));
    setAttribute(Qt::WA_QuitOnClose, false);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(pane);
    setFixedWidth(LanternicPane::columnWidth);
    setMinimumHeight(160);
    resize(LanternicPane::columnWidth, pane->sizeHint().height());
}

void PaneWindow::present()
{
    // A window that is minimised, or not on screen for any other reason (another workspace),
    // is mapped afresh where the user is now.
    if (isVisible() && windowHandle() && !windowHandle()->isExposed())
        hide();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void PaneWindow::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    Q_EMIT closedByUser();
}

} // namespace lanternic
