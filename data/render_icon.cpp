// Renders the one SVG icon to a square PNG of the given size, for the hicolor theme.
// Usage: render_icon ICON.svg SIZE OUT.png

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "minimal");
    QGuiApplication app(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: render_icon ICON.svg SIZE OUT.png\n");
        return 2;
    }
    QSvgRenderer svg(QString::fromLocal8Bit(argv[1]));
    const int size = QByteArray(argv[2]).toInt();
    if (!svg.isValid() || size <= 0)
        return 1;
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    svg.render(&painter);
    painter.end();
    return image.save(QString::fromLocal8Bit(argv[3])) ? 0 : 1;
}
