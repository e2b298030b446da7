#pragma once

#include <QPointF>
#include <QRect>
#include <QWidget>
#include <optional>

namespace lanternic {

class LanternicPane;

// The drop-down panel: a frameless popup that hosts the pane under the tray icon and closes
// when the user clicks anywhere else. Where a compositing manager runs it is a rounded
// rectangle with a shadow; elsewhere a square one with a one-pixel border.
class PanelWindow : public QWidget {
    Q_OBJECT

public:
    explicit PanelWindow(LanternicPane *pane, QWidget *parent = nullptr);

    // Shows the panel with its top edge centred on the anchor.
    void showAt(QPointF anchorTopCenter);

    bool isComposited() const { return m_composited; }
    // The panel's own rectangle inside the window, which is larger by the shadow.
    QRect panelRect() const;

    // Where a panel of this size goes: centred under the anchor, kept 4 points inside the
    // available area (the right-hand limit wins when the panel is wider than the space).
    static QPoint placement(QPointF anchorTopCenter, QSize size, std::optional<QRect> available);

Q_SIGNALS:
    void hidden();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void setComposited(bool composited);
    QMargins shadowMargins() const;
    void cutCorners();
    void fit();
    void place();

    LanternicPane *m_pane;
    QPointF m_anchor;
    bool m_composited = false;
};

} // namespace lanternic
