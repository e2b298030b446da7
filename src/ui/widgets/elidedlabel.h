#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

namespace lanternic {

// Answers a tooltip event of a widget showing text in width: the whole text when it was cut
// short, no tooltip when it fits.
void tellWholeIfElided(QWidget *widget, QEvent *event, const QString &text, int width);

// One line of plain text that elides at its end instead of growing wider.
class ElidedLabel : public QWidget {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    void setText(const QString &text);
    void setColor(const QColor &color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
    QColor m_color;
};

} // namespace lanternic
