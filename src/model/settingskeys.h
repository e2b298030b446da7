#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QTime>

class QSettings;

namespace lanternic {

// Who writes a setting, and so what may be done with it.
enum class SettingScope {
    preference, // the user's choice, in the settings window or on the command line
    record,     // what the app keeps as it runs; merged, never overwritten blindly
    cache,      // learnt again when lost
    identity,   // the watcher's own, made once
};

// A value its store encodes and decodes itself (JSON, or a map), with no plain default.
struct Document {};
// A time of day, stored as "HH:mm".
struct ClockTime {
    int hour;
    int minute;
    QTime time() const { return QTime(hour, minute); }
};

// One key in the user's settings: its name, its type (T), its default and its scope.
template<typename T> struct Setting {
    QLatin1StringView key;
    T fallback;
    SettingScope scope;

    operator QString() const { return key; }
    operator QAnyStringView() const { return key; }
};

// Every key Lanternic keeps in the user's settings, in one table. Each settings class reads
// its keys through the readers below, which fall back to the key's default for anything
// stored that cannot be read.
namespace SettingsKeys {

using namespace Qt::StringLiterals;
using enum SettingScope;

inline constexpr Setting<QLatin1StringView> sources{"Lanternic.sources"_L1, {}, preference};
inline constexpr Setting<int> refreshIntervalMinutes{"Lanternic.refreshIntervalMinutes"_L1, 2,
                                                     preference};
inline constexpr Setting<bool> showOperational{"Lanternic.showOperational"_L1, true, preference};
inline constexpr Setting<bool> notifications{"Lanternic.notifications"_L1, true, preference};
inline constexpr Setting<bool> treatMaintenanceAsOperational{
    "Lanternic.treatMaintenanceAsOperational"_L1, false, preference};
inline constexpr Setting<bool> quietHours{"Lanternic.quietHours"_L1, false, preference};
inline constexpr Setting<ClockTime> quietHoursStart{
    "Lanternic.quietHoursStart"_L1, {22, 0}, preference};
inline constexpr Setting<ClockTime> quietHoursEnd{"Lanternic.quietHoursEnd"_L1, {7, 0}, preference};
inline constexpr Setting<bool> automaticallyChecksForUpdates{
    "Lanternic.automaticallyChecksForUpdates"_L1, true, preference};
// An ISO 8601 instant; absent while nothing is paused.
inline constexpr Setting<Document> notificationsPausedUntil{
    "Lanternic.notificationsPausedUntil"_L1, {}, preference};
inline constexpr Setting<Document> notificationRules{
    "Lanternic.notificationRules"_L1, {}, preference};
inline constexpr Setting<Document> silences{"Lanternic.silences"_L1, {}, record};
inline constexpr Setting<Document> checkHistory{"Lanternic.checkHistory"_L1, {}, record};
inline constexpr Setting<Document> healthLog{"Lanternic.healthLog"_L1, {}, record};
inline constexpr Setting<Document> sourceKinds{"Lanternic.sourceKinds"_L1, {}, cache};
// Where the watcher forwards its news: ntfy topics and JSON webhooks, one address a line.
inline constexpr Setting<QLatin1StringView> forward{"Lanternic.forward"_L1, {}, preference};
// The watcher's own id, made at its first start, which its relay feed carries.
inline constexpr Setting<Document> watcherId{"Lanternic.watcherId"_L1, {}, identity};

// Text: a stored string, else the default.
QString read(const QSettings &defaults, const Setting<QLatin1StringView> &setting);
// Like an integer read from the platform's defaults: numbers and numeric text count; zero or
// anything else is the default.
int read(const QSettings &defaults, const Setting<int> &setting);
// File-backed settings keep booleans as the words "true" and "false"; anything else is the
// default.
bool read(const QSettings &defaults, const Setting<bool> &setting);
QTime read(const QSettings &defaults, const Setting<ClockTime> &setting);

} // namespace SettingsKeys

} // namespace lanternic
