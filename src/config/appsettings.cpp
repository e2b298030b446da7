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

bool storedBool(const QSettings &defaults, const QString &key, bool fallback)
{
    const QVariant value = defaults.value(key);
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    if (value.typeId() == QMetaType::QString &&
        (value.toString() == "true"_L1 || value.toString() == "false"_L1))
        return value.toString() == "true"_L1;
    return fallback;
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

    m_showOperational =
        storedBool(defaults, SettingsKeys::showOperational, SettingsKeys::defaultShowOperational);
    m_notifications =
        storedBool(defaults, SettingsKeys::notifications, SettingsKeys::defaultNotifications);
    m_treatMaintenanceAsOperational =
        storedBool(defaults, SettingsKeys::treatMaintenanceAsOperational,
                   SettingsKeys::defaultTreatMaintenanceAsOperational);
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

void AppSettings::setNotifications(bool notify)
{
    m_defaults.setValue(SettingsKeys::notifications, notify);
    if (notify != m_notifications) {
        m_notifications = notify;
        Q_EMIT notificationsChanged();
    }
}

void AppSettings::setTreatMaintenanceAsOperational(bool treat)
{
    m_defaults.setValue(SettingsKeys::treatMaintenanceAsOperational, treat);
    if (treat != m_treatMaintenanceAsOperational) {
        m_treatMaintenanceAsOperational = treat;
        Q_EMIT treatMaintenanceAsOperationalChanged();
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
