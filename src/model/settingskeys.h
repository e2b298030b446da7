#pragma once

#include <QString>

namespace lanternic {

// Every key Lanternic keeps in the user's settings, with the defaults of the plain values
// (what the stores keep as documents reads its own defaults).
namespace SettingsKeys {

inline const QString sources = QStringLiteral("Lanternic.sources");
inline const QString refreshIntervalMinutes = QStringLiteral("Lanternic.refreshIntervalMinutes");
inline const QString showOperational = QStringLiteral("Lanternic.showOperational");
inline const QString sourceKinds = QStringLiteral("Lanternic.sourceKinds");
inline const QString checkHistory = QStringLiteral("Lanternic.checkHistory");
inline const QString silences = QStringLiteral("Lanternic.silences");
inline const QString healthLog = QStringLiteral("Lanternic.healthLog");
inline const QString notifications = QStringLiteral("Lanternic.notifications");
inline const QString notificationRules = QStringLiteral("Lanternic.notificationRules");
inline const QString quietHours = QStringLiteral("Lanternic.quietHours");
inline const QString quietHoursStart = QStringLiteral("Lanternic.quietHoursStart");
inline const QString quietHoursEnd = QStringLiteral("Lanternic.quietHoursEnd");
inline const QString notificationsPausedUntil =
    QStringLiteral("Lanternic.notificationsPausedUntil");
inline const QString automaticallyChecksForUpdates =
    QStringLiteral("Lanternic.automaticallyChecksForUpdates");
// The watcher's own id, made at its first start, which its relay feed carries.
inline const QString watcherId = QStringLiteral("Lanternic.watcherId");
inline const QString treatMaintenanceAsOperational =
    QStringLiteral("Lanternic.treatMaintenanceAsOperational");

inline constexpr int defaultRefreshIntervalMinutes = 2;
inline constexpr bool defaultShowOperational = true;
inline constexpr bool defaultNotifications = true;
inline constexpr bool defaultTreatMaintenanceAsOperational = false;

} // namespace SettingsKeys

} // namespace lanternic
