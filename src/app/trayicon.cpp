#include "app/trayicon.h"

#include "ui/widgets/symbols.h"
#include "ui/widgets/theme.h"

#include <QCoreApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <array>
#include <cmath>

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

QImage drawCompact(Health overall, int badgeCount, const QPalette &palette, qreal side,
                   qreal pixelRatio)
{
    const QColor color = Theme::healthColor(overall, palette);
    QImage icon((QSizeF(side, side) * pixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    icon.setDevicePixelRatio(pixelRatio);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);

    // The waveform with a stroke heavy enough for a small slot, across the whole width; with
    // a badge it keeps to the upper part so that the badge below has its own room.
    const qreal stroke = std::max(1.6, side * 0.1);
    const qreal traceHeight = badgeCount < 1 ? side * 0.8 : side * 0.62;
    const QRectF trace(stroke / 2, badgeCount < 1 ? (side - traceHeight) / 2 : stroke / 2,
                       side - stroke, traceHeight - stroke);
    // The symbol's trace, stretched from its own extent to the trace's rectangle.
    const QPolygonF ecg = Symbols::waveform();
    const QRectF extent = ecg.boundingRect();
    const QTransform stretch =
        QTransform::fromTranslate(trace.left(), trace.top())
            .scale(trace.width() / extent.width(), trace.height() / extent.height())
            .translate(-extent.left(), -extent.top());
    painter.setPen(QPen(color, stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(stretch.map(ecg));
    if (badgeCount < 1)
        return icon;

    // The count on a pill in the lower right corner, as wide as its digits need, cut out of
    // the waveform by a clear ring.
    const QString text = badgeCount > 99 ? u"99+"_s : QString::number(badgeCount);
    const qreal height = std::round(side * 0.52);
    const QFont font = Theme::font(height - 1, QFont::Bold);
    const qreal width = std::min(
        side, std::max(height, QFontMetricsF(font).horizontalAdvance(text) + height * 0.4));
    const QRectF pill(side - width, side - height, width, height);
    painter.setPen(Qt::NoPen);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(pill.adjusted(-1.2, -1.2, 1.2, 1.2), height / 2 + 1.2,
                            height / 2 + 1.2);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setBrush(color);
    painter.drawRoundedRect(pill, height / 2, height / 2);
    // Dark digits where the colour is light (amber), white elsewhere.
    const bool light =
        0.2126 * color.redF() + 0.7152 * color.greenF() + 0.0722 * color.blueF() > 0.55;
    painter.setPen(light ? QColor(0x1d, 0x1d, 0x1f) : Qt::white);
    painter.setFont(font);
    painter.drawText(pill.adjusted(-2, 0, 2, 0), Qt::AlignCenter, text);
    return icon;
}

namespace {

class TrayIconEngine : public QIconEngine {
public:
    TrayIconEngine(Health overall, int badgeCount, const QPalette &palette)
        : m_overall(overall), m_count(badgeCount), m_palette(palette)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        const QImage image = render(rect.size(), painter->device()->devicePixelRatioF());
        const QSizeF size = image.deviceIndependentSize().scaled(rect.size(), Qt::KeepAspectRatio);
        painter->drawImage(QRectF(QPointF(rect.x() + (rect.width() - size.width()) / 2,
                                          rect.y() + (rect.height() - size.height()) / 2),
                                  size),
                           image);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1.0);
    }

    QPixmap scaledPixmap(const QSize &size, QIcon::Mode, QIcon::State, qreal scale) override
    {
        QImage image(size * scale, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paint(&painter, QRect(QPoint(0, 0), size), QIcon::Normal, QIcon::Off);
        painter.end();
        return QPixmap::fromImage(image);
    }

    QIconEngine *clone() const override
    {
        return new TrayIconEngine(m_overall, m_count, m_palette);
    }

private:
    QImage render(QSize slot, qreal ratio) const
    {
        const QImage wide = draw(m_overall, m_count, m_palette, ratio);
        const QSizeF wideSize = wide.deviceIndependentSize();
        // Wide slots take the wide form as long as it would not shrink much.
        if (slot.width() >= wideSize.width() * 0.9 * slot.height() / wideSize.height())
            return wide;
        return drawCompact(m_overall, m_count, m_palette, std::min(slot.width(), slot.height()),
                           ratio);
    }

    Health m_overall;
    int m_count;
    QPalette m_palette;
};

} // namespace

QIcon icon(Health overall, int badgeCount, const QPalette &palette)
{
    return QIcon(new TrayIconEngine(overall, badgeCount, palette));
}

QString toolTip(const QString &summaryText)
{
    return QCoreApplication::translate("TrayIcon", "Lanternic \u2014 %1").arg(summaryText);
}

} // namespace lanternic::TrayIcon
