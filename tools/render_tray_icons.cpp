// Renders the compact tray icon to one PNG for looking at: each health with no badge and
// badges 1, 9, 42 and 120, at 22 and 16 pixels, on a light and a dark tray, magnified 8×.

#include "app/trayicon.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <cstdio>

using namespace lanternic;
using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QString file = argc > 1 ? QString::fromLocal8Bit(argv[1]) : u"tray-icons.png"_s;
    constexpr int zoom = 8, gap = 4;
    const QList<int> badges{0, 1, 9, 42, 120};
    const QList<Health> healths{Health::operational, Health::degraded, Health::down,
                                Health::unknown};
    const QList<int> sides{22, 16};
    const int cell = 24 + gap;
    QImage sheet(QSize(int(badges.size() * sides.size()) * cell * 2, int(healths.size()) * cell) *
                     zoom,
                 QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (int dark = 0; dark < 2; ++dark) {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
        const QColor tray = dark ? QColor(0x2b, 0x2b, 0x2e) : QColor(0xe8, 0xe8, 0xea);
        for (int row = 0; row < healths.size(); ++row) {
            for (int s = 0; s < sides.size(); ++s) {
                for (int b = 0; b < badges.size(); ++b) {
                    const int side = sides[s];
                    QImage slot(side, side, QImage::Format_RGB32);
                    slot.fill(tray);
                    QPainter onSlot(&slot);
                    onSlot.drawImage(
                        0, 0, TrayIcon::drawCompact(healths[row], badges[b], palette, side, 1));
                    onSlot.end();
                    const int column = (dark * int(sides.size()) + s) * int(badges.size()) + b;
                    painter.drawImage(QPoint(column * cell * zoom, row * cell * zoom),
                                      slot.scaled(slot.size() * zoom));
                }
            }
        }
    }
    painter.end();
    sheet.save(file);
    std::printf("%s (%dx%d)\n", qPrintable(file), sheet.width(), sheet.height());
    return 0;
}
