#pragma once

#include <QKeyEvent>
#include <QWidget>

namespace lanternic {

// A window that Escape closes; closing only hides it, so it comes back as it was.
class EscapeClosingWindow : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Escape)
            close();
        else
            QWidget::keyPressEvent(event);
    }
};

} // namespace lanternic
