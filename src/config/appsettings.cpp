#include "config/appsettings.h"

#include "model/settingskeys.h"

#include <QSettings>

namespace lanternic {

using namespace Qt::StringLiterals;

bool isBlank(QChar c)
{
    // In ASCII the space is the only space separator; the lookup is for the rest.
    if (c.unicode() < 128)
        return c == u'\t' || c == u' ';
    return c.category() == QChar::Separator_Space;
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
    const QString stored = SettingsKeys::read(defaults, SettingsKeys::sources);
    m_sourcesText = migratedSourcesText(stored);
    if (m_sourcesText != stored)
        defaults.setValue(SettingsKeys::sources, m_sourcesText);
    readPreferences();
}

void AppSettings::readPreferences()
{
    m_refreshIntervalMinutes = SettingsKeys::read(m_defaults, SettingsKeys::refreshIntervalMinutes);
    m_showOperational = SettingsKeys::read(m_defaults, SettingsKeys::showOperational);
    m_notifications = SettingsKeys::read(m_defaults, SettingsKeys::notifications);
    m_treatMaintenanceAsOperational =
        SettingsKeys::read(m_defaults, SettingsKeys::treatMaintenanceAsOperational);
}

void AppSettings::reload()
{
    const QString sources = m_sourcesText;
    const int interval = m_refreshIntervalMinutes;
    const bool showOperational = m_showOperational;
    const bool notifications = m_notifications;
    const bool treatMaintenance = m_treatMaintenanceAsOperational;
    m_sourcesText = migratedSourcesText(SettingsKeys::read(m_defaults, SettingsKeys::sources));
    readPreferences();
    if (m_sourcesText != sources)
        Q_EMIT sourcesTextChanged();
    if (m_refreshIntervalMinutes != interval)
        Q_EMIT refreshIntervalMinutesChanged();
    if (m_showOperational != showOperational)
        Q_EMIT showOperationalChanged();
    if (m_notifications != notifications)
        Q_EMIT notificationsChanged();
    if (m_treatMaintenanceAsOperational != treatMaintenance)
        Q_EMIT treatMaintenanceAsOperationalChanged();
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
