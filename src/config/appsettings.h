#pragma once

#include "config/sourceregistry.h"

#include <QObject>
#include <QString>

class QSettings;

namespace lanternic {

// The user's preferences that drive monitoring, written through to the settings on every set.
class AppSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString sourcesText READ sourcesText WRITE setSourcesText NOTIFY sourcesTextChanged)
    Q_PROPERTY(int refreshIntervalMinutes READ refreshIntervalMinutes WRITE
                   setRefreshIntervalMinutes NOTIFY refreshIntervalMinutesChanged)
    Q_PROPERTY(bool showOperational READ showOperational WRITE setShowOperational NOTIFY
                   showOperationalChanged)
    Q_PROPERTY(
        bool notifications READ notifications WRITE setNotifications NOTIFY notificationsChanged)

public:
    explicit AppSettings(QSettings &defaults, QObject *parent = nullptr);

    QString sourcesText() const { return m_sourcesText; }
    int refreshIntervalMinutes() const { return m_refreshIntervalMinutes; }
    bool showOperational() const { return m_showOperational; }
    // Whether a desktop notification tells of changes between passes.
    bool notifications() const { return m_notifications; }
    // Whether every Statuspage source reads "under_maintenance" as operational.
    bool treatMaintenanceAsOperational() const { return m_treatMaintenanceAsOperational; }
    // What every source takes from these settings.
    SourceOptions sourceOptions() const
    {
        return {.treatMaintenanceAsOperational = m_treatMaintenanceAsOperational};
    }

    void setSourcesText(const QString &text);
    void setRefreshIntervalMinutes(int minutes);
    void setShowOperational(bool show);
    void setNotifications(bool notify);
    void setTreatMaintenanceAsOperational(bool treat);

    // Reads every preference again from the settings, which another program changed, and
    // tells of those that changed.
    void reload();

    // The older one-line form "a=x, b=y" as one entry per line; other text unchanged.
    static QString migratedSourcesText(const QString &stored);

Q_SIGNALS:
    void sourcesTextChanged();
    void refreshIntervalMinutesChanged();
    void showOperationalChanged();
    void notificationsChanged();
    void treatMaintenanceAsOperationalChanged();

private:
    void readPreferences();

    QSettings &m_defaults;
    QString m_sourcesText;
    int m_refreshIntervalMinutes;
    bool m_showOperational;
    bool m_notifications;
    bool m_treatMaintenanceAsOperational;
};

// Blanks are the tab and the space separators (Unicode category Zs).
bool isBlank(QChar c);
QStringView trimmedOfBlanks(QStringView text);

} // namespace lanternic
