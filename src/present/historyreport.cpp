#include "present/historyreport.h"

#include "model/feedtext.h"
#include "present/displaytext.h"
#include "present/resultjson.h"
#include "store/timetext.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <cmath>

namespace lanternic {

using namespace Qt::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(HistoryReport)
};

} // namespace

QString uptimeText(const std::optional<double> &share)
{
    if (!share)
        return u"\u2014"_s;
    // Never rounded up to a perfect score it did not have.
    const double percent = std::floor(*share * 1000.0) / 10.0;
    // In the user's number format ("96,3 %" in German); the command line keeps C's.
    return (percent == 100.0 ? u"100"_s : QLocale().toString(percent, 'f', 1)) + u" %"_s;
}

QString durationText(qint64 seconds)
{
    const qint64 minutes = seconds / 60;
    if (minutes < 60)
        return Text::tr("%1 min").arg(minutes);
    if (minutes < 24 * 60)
        return minutes % 60 == 0 ? Text::tr("%1 h").arg(minutes / 60)
                                 : Text::tr("%1 h %2 min").arg(minutes / 60).arg(minutes % 60);
    return Text::tr("%1 d %2 h").arg(minutes / (24 * 60)).arg(minutes % (24 * 60) / 60);
}

QString troubleWindowText(const Trouble &trouble, const QDateTime &now)
{
    const auto day = [&now](const QDateTime &time) { return TimeText::dayText(time, now); };
    const auto clock = &TimeText::clockText;
    QString text = day(trouble.start) + u' ' + clock(trouble.start);
    if (!trouble.end)
        return Text::tr("%1 \u2013 ongoing").arg(text);
    if (trouble.start.toLocalTime().date() == trouble.end->toLocalTime().date())
        return text + u'\u2013' + clock(*trouble.end);
    return text + u" \u2013 "_s + day(*trouble.end) + u' ' + clock(*trouble.end);
}

QByteArray historyReport(const QList<HistoryRow> &rows, const QDateTime &now, bool json)
{
    if (json) {
        QJsonArray out;
        for (const HistoryRow &row : rows) {
            QJsonArray troubles;
            for (const Trouble &trouble : row.uptime.troubles) {
                troubles.append(QJsonObject{
                    {u"start"_s, isoTimestamp(trouble.start)},
                    {u"end"_s, trouble.end ? QJsonValue(isoTimestamp(*trouble.end)) : QJsonValue()},
                    {u"health"_s, rawValue(trouble.worst)},
                    {u"incidents"_s, QJsonArray::fromStringList(trouble.incidents)}});
            }
            out.append(QJsonObject{
                {u"id"_s, row.id},
                {u"name"_s, row.name},
                {u"uptime"_s, row.uptime.share ? QJsonValue(*row.uptime.share) : QJsonValue()},
                {u"watchedSeconds"_s, double(row.uptime.watchedSeconds)},
                {u"troubles"_s, troubles}});
        }
        return QJsonDocument(out).toJson(QJsonDocument::Compact) + '\n';
    }
    qsizetype width = 0;
    for (const HistoryRow &row : rows)
        width = std::max(width, FeedText::clean(row.name, 200).size());
    QString text;
    for (const HistoryRow &row : rows) {
        text += FeedText::clean(row.name, 200).leftJustified(width) + u"  "_s +
                uptimeText(row.uptime.share);
        const QList<Trouble> &troubles = row.uptime.troubles;
        if (!troubles.isEmpty()) {
            const auto length = [&now](const Trouble &trouble) {
                return trouble.start.secsTo(trouble.end.value_or(now));
            };
            const Trouble &longest = *std::max_element(
                troubles.begin(), troubles.end(),
                [&](const Trouble &a, const Trouble &b) { return length(a) < length(b); });
            text += u"  %1 trouble%2  longest %3 (%4, %5)"_s.arg(troubles.size())
                        .arg(troubles.size() == 1 ? QString() : u"s"_s)
                        .arg(durationText(length(longest)), rawValue(longest.worst),
                             troubleWindowText(longest, now));
        }
        text += u'\n';
    }
    return text.toUtf8();
}

} // namespace lanternic
