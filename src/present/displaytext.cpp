#include "present/displaytext.h"

#include "model/feedtext.h"

#include <QLocale>
#include <algorithm>

namespace lanternic::DisplayText {

using namespace Qt::StringLiterals;

QString lastCheckText(const std::optional<QDateTime> &lastChecked, const QDateTime &now)
{
    if (!lastChecked)
        return u"Never updated"_s;
    const qint64 s = lastChecked->msecsTo(now) / 1000;
    QString ago;
    if (s < 10)
        ago = u"just now"_s;
    else if (s < 60)
        ago = QString::number(s) + u"s ago"_s;
    else if (s < 3600)
        ago = QString::number(s / 60) + u"m ago"_s;
    else if (s >= 86400)
        ago = QString::number(s / 86400) + u"d ago"_s;
    else
        ago = QString::number(s / 3600) + u"h ago"_s;
    return u"Updated "_s + ago;
}

QString timeLeftText(const SilenceUntil &until, const QDateTime &now)
{
    switch (until.kind) {
    case SilenceUntil::Kind::resolved:
        return u"until resolved"_s;
    case SilenceUntil::Kind::forever:
        return u"forever"_s;
    case SilenceUntil::Kind::date:
        break;
    }
    const qint64 r = now.msecsTo(until.date) / 1000;
    const qint64 s = std::max<qint64>(r, 0);
    if (r >= 86400)
        return u"%1d %2h left"_s.arg(s / 86400).arg(s % 86400 / 3600);
    if (s >= 3600)
        return u"%1h %2m left"_s.arg(s / 3600).arg(s % 3600 / 60);
    return u"%1m left"_s.arg(s % 3600 / 60);
}

QString agoText(const QDateTime &then, const QDateTime &now)
{
    const qint64 s = std::max<qint64>(then.secsTo(now), 0);
    if (s < 60)
        return u"just now"_s;
    if (s < 3600)
        return u"%1 min ago"_s.arg(s / 60);
    if (s < 86400)
        return u"%1 h ago"_s.arg(s / 3600);
    return u"%1 d ago"_s.arg(s / 86400);
}

QString stageText(const QString &stage)
{
    const QString cleaned = FeedText::clean(stage, 40).replace(u'_', u' ');
    if (cleaned.isEmpty())
        return u"Open"_s;
    return cleaned.first(1).toUpper() + cleaned.sliced(1);
}

QString incidentLine(const Incident &incident, const QDateTime &now, qsizetype maximum)
{
    QString line = stageText(incident.stage) + u": "_s + FeedText::clean(incident.name, maximum);
    const QDateTime updated =
        incident.updatedAt.isValid() ? incident.updatedAt : incident.startedAt;
    if (updated.isValid())
        line += u" (updated "_s + agoText(updated, now) + u')';
    return line;
}

namespace {

// "Today", "Tomorrow", "Yesterday" or the weekday's short name, in local time.
QString dayText(const QDateTime &time, const QDateTime &now)
{
    const qint64 days = now.toLocalTime().date().daysTo(time.toLocalTime().date());
    if (days == 0)
        return u"Today"_s;
    if (days == 1)
        return u"Tomorrow"_s;
    if (days == -1)
        return u"Yesterday"_s;
    return QLocale::c().toString(time.toLocalTime().date(), u"ddd"_s);
}

QString clockText(const QDateTime &time)
{
    return time.toLocalTime().time().toString(u"HH:mm"_s);
}

} // namespace

QString windowText(const Maintenance &window, const QDateTime &now)
{
    if (!window.startsAt.isValid())
        return window.endsAt.isValid()
                   ? u"until "_s + dayText(window.endsAt, now) + u' ' + clockText(window.endsAt)
                   : QString();
    const QString start = dayText(window.startsAt, now) + u' ' + clockText(window.startsAt);
    if (!window.endsAt.isValid())
        return u"from "_s + start;
    if (window.startsAt.toLocalTime().date() == window.endsAt.toLocalTime().date())
        return start + u'\u2013' + clockText(window.endsAt);
    return start + u" \u2013 "_s + dayText(window.endsAt, now) + u' ' + clockText(window.endsAt);
}

QString maintenanceLine(const Maintenance &window, const QDateTime &now, qsizetype maximum)
{
    QString line = u"Maintenance: "_s + FeedText::clean(window.name, maximum);
    const QString when = windowText(window, now);
    if (!when.isEmpty())
        line += u" ("_s + when + u')';
    return line;
}

} // namespace lanternic::DisplayText
