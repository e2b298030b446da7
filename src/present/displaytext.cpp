#include "present/displaytext.h"

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

} // namespace lanternic::DisplayText
