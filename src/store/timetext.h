#pragma once

#include <QDateTime>
#include <QString>

namespace lanternic {

// Days and times of day as people read them, in local time and the locale's clock: shared by
// every text that names a moment, in the store's display values and in present's texts.
namespace TimeText {

// "Today", "Tomorrow", "Yesterday" or the weekday's short name.
QString dayText(const QDateTime &time, const QDateTime &now);
// Hours and minutes on the clock the locale reads ("14:05", "2:05 PM").
QString clockFormat();
QString clockText(const QDateTime &time);
// The time of day alone when it is today, else the day and the time.
QString momentText(const QDateTime &time, const QDateTime &now);

} // namespace TimeText

} // namespace lanternic
