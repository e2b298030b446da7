#include "store/timetext.h"

#include <QCoreApplication>
#include <QLocale>

namespace lanternic::TimeText {

using namespace Qt::StringLiterals;

// "Today", "Tomorrow", "Yesterday" or the weekday's short name, in local time.
QString dayText(const QDateTime &time, const QDateTime &now)
{
    const qint64 days = now.toLocalTime().date().daysTo(time.toLocalTime().date());
    if (days == 0)
        return QCoreApplication::translate("DisplayText", "Today");
    if (days == 1)
        return QCoreApplication::translate("DisplayText", "Tomorrow");
    if (days == -1)
        return QCoreApplication::translate("DisplayText", "Yesterday");
    return QLocale().toString(time.toLocalTime().date(), u"ddd"_s);
}

QString clockFormat()
{
    // Hours and minutes on the clock the locale reads; some locales' short form has seconds.
    return QLocale().timeFormat(QLocale::ShortFormat).contains(u'a', Qt::CaseInsensitive)
               ? u"h:mm AP"_s
               : u"HH:mm"_s;
}

QString clockText(const QDateTime &time)
{
    return QLocale().toString(time.toLocalTime().time(), clockFormat());
}

QString momentText(const QDateTime &time, const QDateTime &now)
{
    if (time.toLocalTime().date() == now.toLocalTime().date())
        return clockText(time);
    return dayText(time, now) + u' ' + clockText(time);
}

} // namespace lanternic::TimeText
