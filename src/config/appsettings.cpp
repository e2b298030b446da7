#include "config/appsettings.h"

#include "model/settingskeys.h"

#include <QSettings>

namespace lanternic {

using namespace Qt::StringLiterals;

bool isBlank(QChar c)
{
    return c == u'\t' || c.category() == QChar::Separator_Space;
}

QStringView trimmedOfBlanks(QStringView text)
{
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

QString AppSettings::migratedSourcesText(const QString &stored)
{
    if (!stored.contains(u',') || stored.contains(u'\n'))
        return stored;
    QStringList lines;
    for (QStringView piece : QStringView(stored).split(u',', Qt::SkipEmptyParts)) {
        piece = trimmedOfBlanks(piece);
        if (!piece.isEmpty())
            lines.append(piece.toString());
    }
    return lines.join(u'\n');
}

AppSettings::AppSettings(QSettings &defaults, QObject *parent)
    : QObject(parent), m_defaults(defaults)
{
    const QVariant sources = defaults.value(SettingsKeys::sources);
    const QString stored = sources.typeId() == QMetaType::QString ? sources.toString() : QString();
    m_sourcesText = migratedSourcesText(stored);
    if (m_sourcesText != stored)
        defaults.setValue(SettingsKeys::sources, m_sourcesText);

    // Like an integer read from the platform's defaults: numbers and numeric text count.
    const int interval = defaults.value(SettingsKeys::refreshIntervalMinutes).toInt();
    m_refreshIntervalMinutes =
        interval == 0 ? SettingsKeys::defaultRefreshIntervalMinutes : interval;

    // File-backed settings keep booleans as the words "true" and "false".
    const QVariant show = defaults.value(SettingsKeys::showOperational);
    if (show.typeId() == QMetaType::Bool)
        m_showOperational = show.toBool();
    else if (show.typeId() == QMetaType::QString &&
             (show.toString() == "true"_L1 || show.toString() == "false"_L1))
        m_showOperational = show.toString() == "true"_L1;
    else
        m_showOperational = SettingsKeys::defaultShowOperational;
}

void AppSettings::setSourcesText(const QString &text)
{
    m_defaults.setValue(SettingsKeys::sources, text);
    if (text != m_sourcesText) {
        m_sourcesText = text;
        Q_EMIT sourcesTextChanged();
    }
}

void AppSettings::setRefreshIntervalMinutes(int minutes)
{
    m_defaults.setValue(SettingsKeys::refreshIntervalMinutes, minutes);
    if (minutes != m_refreshIntervalMinutes) {
        m_refreshIntervalMinutes = minutes;
        Q_EMIT refreshIntervalMinutesChanged();
    }
}

void AppSettings::setShowOperational(bool show)
{
    m_defaults.setValue(SettingsKeys::showOperational, show);
    if (show != m_showOperational) {
        m_showOperational = show;
        Q_EMIT showOperationalChanged();
    }
}

} // namespace lanternic
