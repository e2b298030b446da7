#pragma once

#include "model/health.h"

#include <QColor>
#include <QFont>
#include <QString>
#include <QStringList>

class QPalette;
class QWidget;

namespace lanternic::Theme {

// Health colours are ours and fixed; unknown is the palette's secondary grey.
QColor healthColor(Health health, const QPalette &palette);
QString healthSymbol(Health health);
// Planned work: a calm blue, neither a warning nor all clear.
QColor maintenanceColor();

QColor secondaryText(const QPalette &palette);
QColor tertiaryText(const QPalette &palette);
// The accent at the given opacity, for hover backgrounds.
QColor accent(const QPalette &palette, qreal opacity);

// A font of the given size in device-independent pixels ("points").
QFont font(qreal size, QFont::Weight weight = QFont::Normal);

// Feed text as a tooltip that is never read as markup.
QString plainToolTip(const QStringList &lines);
// Sets it as widget's tooltip, and the same lines, in plain text, as its accessible
// description: screen readers would otherwise read the tooltip's markup aloud.
void setPlainToolTip(QWidget *widget, const QStringList &lines);
// Feed text as a menu or action title in which "&" is never a mnemonic.
QString menuText(const QString &text);

} // namespace lanternic::Theme
