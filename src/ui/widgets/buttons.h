#pragma once

#include <QAbstractButton>
#include <QWidget>

class QKeyEvent;
class QPainter;
class QTimer;

namespace lanternic {

// A button of the panel drawn by hand: Enter acts as Space does, and the focus shows as a
// ring in the desktop's highlight colour.
class PaneButton : public QAbstractButton {
    Q_OBJECT

public:
    using QAbstractButton::QAbstractButton;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    // Draws the ring around area while the button has the focus.
    void paintFocusRing(QPainter &painter, const QRectF &area, qreal radius) const;
};

// A full-width menu-like row: symbol, title, and an accent background on hover. Hover
// repaints come with Qt::WA_Hover, so the look follows underMouse() without state of its own.
// A title longer than the row ends in "…", the whole of it in the tooltip.
class MenuActionRow : public PaneButton {
    Q_OBJECT

public:
    MenuActionRow(const QString &title, const QString &systemImage, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    QRect textArea() const;

    QString m_systemImage;
};

// A short text in the link colour that acts when clicked, as "Unmute".
class TextButton : public PaneButton {
    Q_OBJECT

public:
    explicit TextButton(const QString &text, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

// The round refresh button of the panel's header.
class RefreshButton : public PaneButton {
    Q_OBJECT

public:
    explicit RefreshButton(QWidget *parent = nullptr);

    QSize sizeHint() const override { return {22, 22}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    bool hitButton(const QPoint &pos) const override;
};

// A small indeterminate progress indicator; it animates only while shown.
class Spinner : public QWidget {
    Q_OBJECT

public:
    explicit Spinner(QWidget *parent = nullptr);

    QSize sizeHint() const override { return {22, 22}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QTimer *m_timer;
    int m_step = 0;
};

} // namespace lanternic
