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
    const QString stored = SettingsKeys::read(defaults, SettingsKeys::sources);
    m_sourcesText = migratedSourcesText(stored);
    if (m_sourcesText != stored)
        defaults.setValue(SettingsKeys::sources, m_sourcesText);

    m_refreshIntervalMinutes = SettingsKeys::read(defaults, SettingsKeys::refreshIntervalMinutes);
    m_showOperational = SettingsKeys::read(defaults, SettingsKeys::showOperational);
    m_notifications = SettingsKeys::read(defaults, SettingsKeys::notifications);
    m_treatMaintenanceAsOperational =
        SettingsKeys::read(defaults, SettingsKeys::treatMaintenanceAsOperational);
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
