#pragma once

#include <QAbstractButton>
#include <QWidget>

class QTimer;

namespace lanternic {

// A full-width menu-like row: symbol, title, and an accent background on hover. Hover
// repaints come with Qt::WA_Hover, so the look follows underMouse() without state of its own.
class MenuActionRow : public QAbstractButton {
    Q_OBJECT

public:
    MenuActionRow(const QString &title, const QString &systemImage, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_systemImage;
};

// The round refresh button of the panel's header.
class RefreshButton : public QAbstractButton {
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
