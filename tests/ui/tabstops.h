#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QStringList>
#include <QTest>

// What Tab visits from the widget with the focus until it comes back round: each stop's
// accessible name, else its text, else its class.
inline QStringList tabStops()
{
    QStringList stops;
    QWidget *first = QApplication::focusWidget();
    for (QWidget *focused = first; focused && stops.size() < 50;) {
        auto *button = qobject_cast<QAbstractButton *>(focused);
        stops.append(!focused->accessibleName().isEmpty() ? focused->accessibleName()
                     : button                             ? button->text()
                              : QString::fromLatin1(focused->metaObject()->className()));
        QTest::keyClick(focused, Qt::Key_Tab);
        focused = QApplication::focusWidget();
        if (focused == first)
            break;
    }
    return stops;
}
