#include "app/trayicon.h"

#include "ui/symbols.h"
#include "ui/theme.h"

#include <QFontMetricsF>
#include <QPainter>

namespace lanternic::TrayIcon {

using namespace Qt::StringLiterals;

namespace {
constexpr qreal symbolWidth = 18;
constexpr qreal symbolHeight = 16;
constexpr qreal gap = 3;
constexpr qreal disc = 13;
} // namespace

QImage draw(Health overall, int badgeCount, const QPalette &palette, qreal pixelRatio)
{
    const QColor color = Theme::healthColor(overall, palette);
    const QImage symbol = Symbols::image(u"waveform.path.ecg"_s, QSizeF(symbolWidth, symbolHeight),
                                         color, pixelRatio);
    if (badgeCount < 1)
        return symbol;

    const QSizeF size(symbolWidth + gap + disc, std::max(symbolHeight, disc));
    QImage icon((size * pixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    icon.setDevicePixelRatio(pixelRatio);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.drawImage(QPointF(0, (size.height() - symbolHeight) / 2), symbol);
    const QRectF circle(size.width() - disc, (size.height() - disc) / 2, disc, disc);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(circle);

    // The digits are holes in the disc, so the tray shows through them.
    QFont font = Theme::font(9, QFont::Bold);
    painter.setFont(font);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setPen(Qt::black);
    painter.drawText(circle.adjusted(-4, 0, 4, 0), Qt::AlignCenter, QString::number(badgeCount));
    return icon;
}

QString toolTip(const QString &summaryText)
{
    return u"Lanternic \u2014 "_s + summaryText;
}

} // namespace lanternic::TrayIcon
