#pragma once

#include <QKeyEvent>
#include <QMargins>
#include <QRect>
#include <QWidget>

namespace lanternic {

// A window that Escape closes; closing only hides it, so it comes back as it was.
class EscapeClosingWindow : public QWidget {
public:
    using QWidget::QWidget;

    // The window's geometry: its preferred size where the available area has room for it
    // and its frame, shrunk to fit where not, centred in the area.
    static QRect centredFit(QSize preferred, QRect available, QMargins frame)
    {
        QRect framed = QRect(QPoint(), preferred.boundedTo(available.size().shrunkBy(frame)))
                           .marginsAdded(frame);
        framed.moveCenter(available.center());
        return framed.marginsRemoved(frame);
    }

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
