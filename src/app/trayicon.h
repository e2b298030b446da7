#pragma once

#include "model/health.h"

#include <QIcon>
#include <QImage>
#include <QString>

class QPalette;

namespace lanternic::TrayIcon {

// The tray icon: the ECG waveform in the overall health's colour and, when the count is at
// least one, the count punched out of a small disc beside it.
QImage draw(Health overall, int badgeCount, const QPalette &palette, qreal pixelRatio);

// The same for square tray slots (most Linux trays, 16 to 24 pixels): a heavier waveform in
// the upper part and the count (up to "99+") on a pill of its own in the lower right.
QImage drawCompact(Health overall, int badgeCount, const QPalette &palette, qreal side,
                   qreal pixelRatio);

// An icon that draws the wide form where the slot is wide and the compact form where it is
// square.
QIcon icon(Health overall, int badgeCount, const QPalette &palette);

// "Lanternic — " and the summary.
QString toolTip(const QString &summaryText);

} // namespace lanternic::TrayIcon
