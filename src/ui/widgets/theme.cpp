#include "ui/widgets/theme.h"

#include "model/feedtext.h"

#include <QApplication>
#include <QPalette>
#include <QWidget>

namespace lanternic::Theme {

using namespace Qt::StringLiterals;

namespace {

QColor faded(QColor color, qreal opacity)
{
    color.setAlphaF(opacity);
    return color;
}

} // namespace

QColor maintenanceColor()
{
    return QColor(0x3B, 0x82, 0xF6);
}

QColor healthColor(Health health, const QPalette &palette)
{
    switch (health) {
    case Health::operational:
        return QColor(0x30, 0xB4, 0x50);
    case Health::degraded:
        return QColor(0xF5, 0x8C, 0x00);
    case Health::down:
        return QColor(0xE8, 0x3A, 0x30);
    case Health::unknown:
        break;
    }
    return secondaryText(palette);
}

QString healthSymbol(Health health)
{
    switch (health) {
    case Health::operational:
        return u"checkmark.circle.fill"_s;
    case Health::degraded:
        return u"exclamationmark.triangle.fill"_s;
    case Health::down:
        return u"xmark.octagon.fill"_s;
    case Health::unknown:
        break;
    }
    return u"questionmark.circle.fill"_s;
}

QColor secondaryText(const QPalette &palette)
{
    return faded(palette.color(QPalette::WindowText), 0.62);
}

QColor tertiaryText(const QPalette &palette)
{
    return faded(palette.color(QPalette::WindowText), 0.38);
}

QColor accent(const QPalette &palette, qreal opacity)
{
    return faded(palette.color(QPalette::Highlight), opacity);
}

QFont font(qreal size, QFont::Weight weight)
{
    QFont font = QApplication::font();
    font.setPixelSize(qRound(size));
    font.setWeight(weight);
    return font;
}

QString plainToolTip(const QStringList &lines)
{
    QStringList escaped;
    for (const QString &line : lines) {
        if (!line.isEmpty())
            escaped.append(FeedText::clean(line).toHtmlEscaped());
    }
    if (escaped.isEmpty())
        return QString();
    // Escaped, so that the tooltip shows the text exactly, tags and all; one line per piece,
    // never broken inside (an address stays whole).
    return u"<p style='white-space:pre'>"_s + escaped.join(u"<br>"_s) + u"</p>"_s;
}

void setPlainToolTip(QWidget *widget, const QStringList &lines)
{
    widget->setToolTip(plainToolTip(lines));
    QStringList plain;
    for (const QString &line : lines) {
        if (!line.isEmpty())
            plain.append(FeedText::clean(line));
    }
    widget->setAccessibleDescription(plain.join(u", "_s));
}

QString menuText(const QString &text)
{
    return FeedText::clean(text).replace(u'&', u"&&"_s);
}

} // namespace lanternic::Theme
