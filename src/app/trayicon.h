#pragma once

#include "model/health.h"

#include <QImage>
#include <QString>

class QPalette;

namespace lanternic::TrayIcon {

// The tray icon: the ECG waveform in the overall health's colour and, when the count is at
// least one, the count punched out of a small disc beside it.
QImage draw(Health overall, int badgeCount, const QPalette &palette, qreal pixelRatio);

// "Lanternic — " and the summary.
QString toolTip(const QString &summaryText);

} // namespace lanternic::TrayIcon
