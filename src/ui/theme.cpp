#include "ui/theme.h"

#include <QApplication>
#include <QPalette>

namespace lanternic::Theme {

using namespace Qt::StringLiterals;

namespace {

QColor faded(QColor color, qreal opacity)
{
    color.setAlphaF(opacity);
    return color;
}

} // namespace

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

QString plainToolTip(const QString &text)
{
    if (text.isEmpty())
        return text;
    // Escaped and wrapped, so that the tooltip shows the text exactly, tags and all.
    return u"<p style='white-space:pre-wrap'>"_s + text.toHtmlEscaped() + u"</p>"_s;
}

QString menuText(const QString &text)
{
    QString escaped = text;
    return escaped.replace(u'&', u"&&"_s);
}

} // namespace lanternic::Theme
