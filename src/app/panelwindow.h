#pragma once

#include <QPointF>
#include <QRect>
#include <QWidget>
#include <optional>

namespace lanternic {

class LanternicPane;

// The drop-down panel: a frameless, rounded popup that hosts the pane under the tray icon
// and closes when the user clicks anywhere else.
class PanelWindow : public QWidget {
    Q_OBJECT

public:
    explicit PanelWindow(LanternicPane *pane, QWidget *parent = nullptr);

    // Shows the panel with its top edge centred on the anchor.
    void showAt(QPointF anchorTopCenter);

    // Where a panel of this size goes: centred under the anchor, kept 4 points inside the
    // available area (the right-hand limit wins when the panel is wider than the space).
    static QPoint placement(QPointF anchorTopCenter, QSize size, std::optional<QRect> available);

Q_SIGNALS:
    void hidden();

protected:
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void place();

    LanternicPane *m_pane;
    QPointF m_anchor;
};

} // namespace lanternic
