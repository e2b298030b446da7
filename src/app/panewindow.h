#pragma once

#include <QWidget>

namespace lanternic {

class LanternicPane;

// The panel as an ordinary window, for desktops without a system tray: titled "Lanternic",
// decorated by the window manager, as wide as the pane and as tall as the user likes.
// Closing it quits, since there is no icon left to come back through.
class PaneWindow : public QWidget {
    Q_OBJECT

public:
    explicit PaneWindow(LanternicPane *pane, QWidget *parent = nullptr);

    void present();

Q_SIGNALS:
    void closedByUser();

protected:
    void closeEvent(QCloseEvent *event) override;
};

} // namespace lanternic
