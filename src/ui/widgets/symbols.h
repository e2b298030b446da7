#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QPolygonF>
#include <QSizeF>
#include <QString>

class QPainter;

namespace lanternic {

// Our own small set of vector symbols, looked up by name ("checkmark.circle.fill",
// "bell.slash", "waveform.path.ecg", …) and painted at the device's pixel ratio.
namespace Symbols {

bool exists(const QString &name);

// Paints the symbol into rect; "punched" parts of filled symbols are transparent.
void paint(QPainter &painter, const QString &name, const QRectF &rect, const QColor &color);

// The symbol as an image of size (in device-independent pixels) times the pixel ratio.
QImage image(const QString &name, const QSizeF &size, const QColor &color, qreal pixelRatio);

// The ECG trace of "waveform.path.ecg" as points in the unit square, for drawings that
// stroke it their own way (the compact tray icon).
QPolygonF waveform();

// An icon that paints the symbol afresh at every size and pixel ratio; a null icon for an
// unknown name.
QIcon icon(const QString &name, const QColor &color);

} // namespace Symbols

} // namespace lanternic
