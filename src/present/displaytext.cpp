#include "present/displaytext.h"

#include "model/feedtext.h"
#include "model/newswords.h"
#include "store/timetext.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>

namespace lanternic::DisplayText {

using namespace Qt::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(DisplayText)
};

} // namespace

QString lastCheckText(const std::optional<QDateTime> &lastChecked, const QDateTime &now)
{
    if (!lastChecked)
        return Text::tr("Never updated");
    const qint64 s = lastChecked->msecsTo(now) / 1000;
    if (s < 10)
        return Text::tr("Updated just now");
    if (s < 60)
        return Text::tr("Updated %ns ago", nullptr, int(s));
    if (s < 3600)
        return Text::tr("Updated %nm ago", nullptr, int(s / 60));
    if (s >= 86400)
        return Text::tr("Updated %nd ago", nullptr, int(s / 86400));
    return Text::tr("Updated %nh ago", nullptr, int(s / 3600));
}

QString timeLeftText(const SilenceUntil &until, const QDateTime &now)
{
    switch (until.kind) {
    case SilenceUntil::Kind::resolved:
        return Text::tr("until resolved");
    case SilenceUntil::Kind::forever:
        return Text::tr("forever");
    case SilenceUntil::Kind::date:
        break;
    }
    const qint64 r = now.msecsTo(until.date) / 1000;
    const qint64 s = std::max<qint64>(r, 0);
    if (r >= 86400)
        return Text::tr("%1d %2h left").arg(s / 86400).arg(s % 86400 / 3600);
    if (s >= 3600)
        return Text::tr("%1h %2m left").arg(s / 3600).arg(s % 3600 / 60);
    return Text::tr("%1m left").arg(s % 3600 / 60);
}

QString agoText(const QDateTime &then, const QDateTime &now)
{
    const qint64 s = std::max<qint64>(then.secsTo(now), 0);
    if (s < 60)
        return Text::tr("just now");
    if (s < 3600)
        return Text::tr("%n min ago", nullptr, int(s / 60));
    if (s < 86400)
        return Text::tr("%n h ago", nullptr, int(s / 3600));
    return Text::tr("%n d ago", nullptr, int(s / 86400));
}

QString stageText(const QString &stage)
{
    // Whatever the page wrote, in our words.
    const QString word = NewsWords::stage(stage);
    if (word == "identified"_L1)
        return Text::tr("Identified");
    if (word == "monitoring"_L1)
        return Text::tr("Monitoring");
    if (word == "resolved"_L1)
        return Text::tr("Resolved");
    return Text::tr("Investigating");
}

QString componentStatusText(const QString &status)
{
    const QString word = status.toLower();
    if (word == "operational"_L1)
        return Text::tr("operational");
    if (word == "degraded_performance"_L1)
        return Text::tr("degraded performance");
    if (word == "partial_outage"_L1)
        return Text::tr("partial outage");
    if (word == "major_outage"_L1 || word == "full_outage"_L1)
        return Text::tr("major outage");
    if (word == "under_maintenance"_L1)
        return Text::tr("under maintenance");
    return FeedText::clean(status).replace(u'_', u' ');
}

QString incidentLine(const Incident &incident, const QDateTime &now, qsizetype maximum)
{
    const QString line =
        Text::tr("%1: %2").arg(stageText(incident.stage), FeedText::clean(incident.name, maximum));
    const QDateTime updated =
        incident.updatedAt.isValid() ? incident.updatedAt : incident.startedAt;
    return updated.isValid() ? Text::tr("%1 (updated %2)").arg(line, agoText(updated, now)) : line;
}

QString windowText(const Maintenance &window, const QDateTime &now)
{
    if (!window.startsAt.isValid())
        return window.endsAt.isValid() ? Text::tr("until %1 %2")
                                             .arg(TimeText::dayText(window.endsAt, now),
                                                  TimeText::clockText(window.endsAt))
                                       : QString();
    const QString start =
        TimeText::dayText(window.startsAt, now) + u' ' + TimeText::clockText(window.startsAt);
    if (!window.endsAt.isValid())
        return Text::tr("from %1").arg(start);
    if (window.startsAt.toLocalTime().date() == window.endsAt.toLocalTime().date())
        return start + u'\u2013' + TimeText::clockText(window.endsAt);
    return start + u" \u2013 "_s + TimeText::dayText(window.endsAt, now) + u' ' +
           TimeText::clockText(window.endsAt);
}

QString maintenanceLine(const Maintenance &window, const QDateTime &now, qsizetype maximum)
{
    const QString line = Text::tr("Maintenance: %1").arg(FeedText::clean(window.name, maximum));
    const QString when = windowText(window, now);
    return when.isEmpty() ? line : Text::tr("%1 (%2)").arg(line, when);
}

} // namespace lanternic::DisplayText

namespace lanternic {

namespace {

struct SilenceText {
    Q_DECLARE_TR_FUNCTIONS(SilenceStore)
};

} // namespace

QString label(SilenceDuration duration)
{
    switch (duration) {
    case SilenceDuration::twoHours:
        return SilenceText::tr("For 2 hours");
    case SilenceDuration::oneDay:
        return SilenceText::tr("For 1 day");
    case SilenceDuration::twoDays:
        return SilenceText::tr("For 2 days");
    case SilenceDuration::oneWeek:
        return SilenceText::tr("For 1 week");
    case SilenceDuration::untilResolved:
        return SilenceText::tr("Until resolved");
    case SilenceDuration::forever:
        break;
    }
    return SilenceText::tr("Forever");
}

} // namespace lanternic
