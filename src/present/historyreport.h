#pragma once

#include "store/healthlog.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

namespace lanternic {

// One source's line in `lanternic-check history`.
struct HistoryRow {
    QString id;
    QString name;
    Uptime uptime;
};

// "GitHub  99.2 %  3 troubles  longest 1 h 8 min (down, Tue 14:02–15:10)", one a line; or a
// JSON array of objects with id, name, uptime, watchedSeconds and troubles.
QByteArray historyReport(const QList<HistoryRow> &rows, const QDateTime &now, bool json);

// "99.2 %", "100 %", or "—" when nothing was watched.
QString uptimeText(const std::optional<double> &share);
// "1 h 8 min", "25 min", "3 d 2 h".
QString durationText(qint64 seconds);
// "Tue 14:02–15:10", "Today 09:00 – ongoing", in local time.
QString troubleWindowText(const Trouble &trouble, const QDateTime &now);

} // namespace lanternic
