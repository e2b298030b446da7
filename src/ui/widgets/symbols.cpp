#include "ui/widgets/symbols.h"

#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <functional>

namespace lanternic::Symbols {

using namespace Qt::StringLiterals;

namespace {

// Symbols are drawn in a 1 × 1 square; fill() covers, punch() cuts through what is there.
class Canvas {
public:
    Canvas(QPainter &painter, const QColor &color) : p(painter), color(color) {}

    void fill(const QPainterPath &path)
    {
        p.setPen(Qt::NoPen);
        p.setBrush(color);
        p.drawPath(path);
    }

    void stroke(const QPainterPath &path, qreal width)
    {
        p.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        p.drawPath(path);
    }

    void punchStroke(const QPainterPath &path, qreal width)
    {
        const auto mode = p.compositionMode();
        p.setCompositionMode(QPainter::CompositionMode_Clear);
        p.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        p.drawPath(path);
        p.setCompositionMode(mode);
    }

    void punchFill(const QPainterPath &path)
    {
        const auto mode = p.compositionMode();
        p.setCompositionMode(QPainter::CompositionMode_Clear);
        p.setPen(Qt::NoPen);
        p.setBrush(Qt::black);
        p.drawPath(path);
        p.setCompositionMode(mode);
    }

    QPainter &p;
    QColor color;
};

QPainterPath polyline(std::initializer_list<QPointF> points)
{
    QPainterPath path;
    for (const QPointF &point : points) {
        if (path.elementCount() == 0)
            path.moveTo(point);
        else
            path.lineTo(point);
    }
    return path;
}

QPainterPath circle(QPointF center, qreal radius)
{
    QPainterPath path;
    path.addEllipse(center, radius, radius);
    return path;
}

QPainterPath bell()
{
    QPainterPath path;
    path.moveTo(0.5, 0.12);
    path.cubicTo(0.30, 0.12, 0.22, 0.28, 0.22, 0.45);
    path.lineTo(0.22, 0.62);
    path.lineTo(0.12, 0.75);
    path.lineTo(0.88, 0.75);
    path.lineTo(0.78, 0.62);
    path.lineTo(0.78, 0.45);
    path.cubicTo(0.78, 0.28, 0.70, 0.12, 0.5, 0.12);
    path.closeSubpath();
    path.addEllipse(QPointF(0.5, 0.85), 0.09, 0.07);
    return path;
}

void drawBellSlash(Canvas &c, bool filled)
{
    const QPainterPath slash = polyline({{0.12, 0.08}, {0.88, 0.94}});
    if (filled)
        c.fill(bell());
    else
        c.stroke(bell(), 0.08);
    c.punchStroke(slash, 0.2);
    c.stroke(slash, 0.08);
}

void drawGear(Canvas &c)
{
    QPainterPath teeth;
    const int count = 8;
    for (int i = 0; i < count * 2; ++i) {
        const qreal angle = M_PI * i / count;
        const qreal r = i % 2 == 0 ? 0.46 : 0.36;
        const qreal a1 = angle - M_PI / count / 2, a2 = angle + M_PI / count / 2;
        const QPointF p1(0.5 + r * std::cos(a1), 0.5 + r * std::sin(a1));
        const QPointF p2(0.5 + r * std::cos(a2), 0.5 + r * std::sin(a2));
        if (i == 0)
            teeth.moveTo(p1);
        else
            teeth.lineTo(p1);
        teeth.lineTo(p2);
    }
    teeth.closeSubpath();
    c.stroke(teeth, 0.07);
    c.stroke(circle({0.5, 0.5}, 0.13), 0.07);
}

void drawArrowClockwise(Canvas &c)
{
    QPainterPath arc;
    arc.arcMoveTo(0.16, 0.16, 0.68, 0.68, 40);
    arc.arcTo(0.16, 0.16, 0.68, 0.68, 40, -310);
    c.stroke(arc, 0.09);
    // The head sits at the arc's end, at the top, pointing clockwise.
    c.fill(polyline({{0.46, 0.02}, {0.68, 0.16}, {0.46, 0.30}}));
}

} // namespace

QPolygonF waveform()
{
    return {{{0.03, 0.55},
             {0.25, 0.55},
             {0.34, 0.3},
             {0.46, 0.85},
             {0.58, 0.12},
             {0.68, 0.62},
             {0.75, 0.55},
             {0.97, 0.55}}};
}

namespace {

using Painter = std::function<void(Canvas &)>;

void drawCheckmarkCircle(Canvas &c)
{
    c.fill(circle({0.5, 0.5}, 0.47));
    c.punchStroke(polyline({{0.29, 0.52}, {0.44, 0.67}, {0.71, 0.36}}), 0.11);
}

void drawWarningTriangle(Canvas &c)
{
    QPainterPath triangle = polyline({{0.5, 0.1}, {0.93, 0.86}, {0.07, 0.86}});
    triangle.closeSubpath();
    c.fill(triangle);
    c.stroke(triangle, 0.08);
    c.punchStroke(polyline({{0.5, 0.37}, {0.5, 0.6}}), 0.1);
    c.punchFill(circle({0.5, 0.74}, 0.055));
}

void drawCrossOctagon(Canvas &c)
{
    QPainterPath octagon;
    for (int i = 0; i < 8; ++i) {
        const qreal angle = M_PI / 8 + i * M_PI / 4;
        const QPointF point(0.5 + 0.48 * std::cos(angle), 0.5 + 0.48 * std::sin(angle));
        i == 0 ? octagon.moveTo(point) : octagon.lineTo(point);
    }
    octagon.closeSubpath();
    c.fill(octagon);
    c.punchStroke(polyline({{0.34, 0.34}, {0.66, 0.66}}), 0.1);
    c.punchStroke(polyline({{0.66, 0.34}, {0.34, 0.66}}), 0.1);
}

void drawQuestionCircle(Canvas &c)
{
    c.fill(circle({0.5, 0.5}, 0.47));
    QPainterPath hook;
    hook.moveTo(0.36, 0.39);
    hook.cubicTo(0.36, 0.22, 0.64, 0.22, 0.64, 0.38);
    hook.cubicTo(0.64, 0.49, 0.5, 0.49, 0.5, 0.6);
    c.punchStroke(hook, 0.1);
    c.punchFill(circle({0.5, 0.75}, 0.055));
}

void drawPower(Canvas &c)
{
    QPainterPath arc;
    arc.arcMoveTo(0.14, 0.16, 0.72, 0.72, 125);
    arc.arcTo(0.14, 0.16, 0.72, 0.72, 125, 290);
    c.stroke(arc, 0.09);
    c.stroke(polyline({{0.5, 0.08}, {0.5, 0.46}}), 0.09);
}

// An incident: a speech bubble with an exclamation mark.
void drawIncidentBubble(Canvas &c)
{
    QPainterPath bubble;
    bubble.addRoundedRect(QRectF(0.06, 0.1, 0.88, 0.64), 0.2, 0.2);
    QPainterPath tail = polyline({{0.24, 0.66}, {0.22, 0.92}, {0.46, 0.7}});
    tail.closeSubpath();
    c.fill(bubble.united(tail));
    c.punchStroke(polyline({{0.5, 0.24}, {0.5, 0.44}}), 0.1);
    c.punchFill(circle({0.5, 0.58}, 0.055));
}

// Maintenance: a wrench.
void drawWrench(Canvas &c)
{
    c.stroke(polyline({{0.2, 0.8}, {0.56, 0.44}}), 0.16);
    c.fill(circle({0.66, 0.34}, 0.24));
    QPainterPath jaw = polyline({{0.66, 0.34}, {0.98, 0.18}, {0.82, 0.02}});
    jaw.closeSubpath();
    c.punchFill(jaw);
    c.punchFill(circle({0.66, 0.34}, 0.08));
}

void drawWaveform(Canvas &c)
{
    QPainterPath trace;
    trace.addPolygon(waveform());
    c.stroke(trace, 0.08);
}

void drawClock(Canvas &c)
{
    c.stroke(circle({0.5, 0.5}, 0.42), 0.08);
    c.stroke(polyline({{0.5, 0.24}, {0.5, 0.5}, {0.68, 0.6}}), 0.08);
}

const QHash<QString, Painter> &painters()
{
    static const QHash<QString, Painter> table{
        {u"checkmark.circle.fill"_s, drawCheckmarkCircle},
        {u"exclamationmark.triangle.fill"_s, drawWarningTriangle},
        {u"xmark.octagon.fill"_s, drawCrossOctagon},
        {u"questionmark.circle.fill"_s, drawQuestionCircle},
        {u"bell.slash"_s, [](Canvas &c) { drawBellSlash(c, false); }},
        {u"bell.slash.fill"_s, [](Canvas &c) { drawBellSlash(c, true); }},
        {u"gearshape"_s, drawGear},
        {u"power"_s, drawPower},
        {u"clock"_s, drawClock},
        {u"arrow.clockwise"_s, drawArrowClockwise},
        {u"chevron.down"_s,
         [](Canvas &c) {
             c.stroke(polyline({{0.2, 0.35}, {0.5, 0.65}, {0.8, 0.35}}), 0.12);
         }},
        {u"chevron.right"_s,
         [](Canvas &c) {
             c.stroke(polyline({{0.35, 0.2}, {0.65, 0.5}, {0.35, 0.8}}), 0.12);
         }},
        {u"exclamationmark.bubble.fill"_s, drawIncidentBubble},
        {u"wrench.fill"_s, drawWrench},
        {u"waveform.path.ecg"_s, drawWaveform},
    };
    return table;
}

class SymbolIconEngine : public QIconEngine {
public:
    SymbolIconEngine(QString name, QColor color) : m_name(std::move(name)), m_color(color) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const QImage picture =
            image(m_name, rect.size(), colorFor(mode), painter->device()->devicePixelRatioF());
        painter->drawImage(rect, picture);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1.0);
    }

    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State, qreal scale) override
    {
        return QPixmap::fromImage(image(m_name, size, colorFor(mode), scale));
    }

    QIconEngine *clone() const override { return new SymbolIconEngine(m_name, m_color); }
    QString iconName() override { return m_name; }

private:
    QColor colorFor(QIcon::Mode mode) const
    {
        if (mode != QIcon::Disabled)
            return m_color;
        QColor faded = m_color;
        faded.setAlphaF(m_color.alphaF() * 0.4);
        return faded;
    }

    QString m_name;
    QColor m_color;
};

} // namespace

bool exists(const QString &name)
{
    return painters().contains(name);
}

void paint(QPainter &painter, const QString &name, const QRectF &rect, const QColor &color)
{
    const auto draw = painters().constFind(name);
    if (draw == painters().constEnd())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.topLeft());
    painter.scale(rect.width(), rect.height());
    Canvas canvas(painter, color);
    (*draw)(canvas);
    painter.restore();
}

QImage image(const QString &name, const QSizeF &size, const QColor &color, qreal pixelRatio)
{
    const QSize pixels = (size * pixelRatio).toSize().expandedTo(QSize(1, 1));
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    picture.setDevicePixelRatio(pixelRatio);
    // Punched parts must clear only the symbol itself, so it is drawn on its own layer.
    QPainter painter(&picture);
    paint(painter, name, QRectF(QPointF(0, 0), size), color);
    return picture;
}

QIcon icon(const QString &name, const QColor &color)
{
    if (!exists(name))
        return QIcon();
    return QIcon(new SymbolIconEngine(name, color));
}

} // namespace lanternic::Symbols
