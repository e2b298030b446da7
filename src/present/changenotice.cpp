#include "present/changenotice.h"

#include "present/displaytext.h"

#include <QCoreApplication>
#include <algorithm>

namespace lanternic::ChangeNotice {

using namespace Qt::StringLiterals;
using namespace ChangeNews;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(ChangeNotice)
};

} // namespace

QString headline(const Watched &item)
{
    if (item.health == Health::operational)
        return Text::tr("%1 recovered").arg(item.sourceName);
    if (item.maintenance)
        return Text::tr("%1 is under maintenance").arg(item.sourceName);
    return Text::tr("%1 is %2").arg(item.sourceName, stateWord(item.health));
}

QString changeLine(const Watched &item)
{
    return item.maintenance ? Text::tr("%1 \u2014 under maintenance").arg(item.name)
                            : Text::tr("%1 \u2014 %2").arg(item.name, stateWord(item.health));
}

QString titledChange(const Watched &item)
{
    if (item.name == item.sourceName)
        return headline(item);
    return Text::tr("%1 \u2014 %2").arg(item.sourceName, changeLine(item));
}

QString incidentLine(const IncidentMention &incident)
{
    return Text::tr("%1: %2").arg(DisplayText::stageText(incident.stage), incident.name);
}

QString openedLine(const OpenIncident &incident)
{
    return Text::tr("%1: new incident \u2014 %2").arg(incident.sourceName, incident.incident.name);
}

namespace {

// Nothing changed its health, but incidents opened: a quiet notice of them.
Notice incidentNotice(const QList<const OpenIncident *> &opened)
{
    Notice notice;
    notice.title = openedLine(*opened.first());
    notice.worst = Health::operational;
    notice.quiet = true;
    notice.sourceId = opened.first()->sourceId;
    notice.page = urlOf(opened.first()->page);
    QStringList lines{incidentLine(opened.first()->incident)};
    for (qsizetype i = 1; i < std::min<qsizetype>(opened.size(), 3); ++i)
        lines.append(openedLine(*opened[i]));
    if (opened.size() > 3)
        lines.append(Text::tr("and %n more", nullptr, int(opened.size() - 3)));
    notice.body = lines.join(u'\n');
    return notice;
}

// Titled after the worst change; what the page says is happening comes before the components
// it touches, then the incidents that opened elsewhere.
Notice changeNotice(const QList<Change> &changes, const QList<const OpenIncident *> &opened)
{
    const Watched &worst = *changes.first().watched;
    Notice notice;
    notice.worst = worst.health;
    notice.sourceId = worst.sourceId;
    notice.page = urlOf(worst.page);
    notice.title = headline(worst);
    QStringList lines;
    if (worst.health != Health::operational) {
        for (const IncidentMention &incident : worst.incidents.mid(0, 2))
            lines.append(incidentLine(incident));
    }
    qsizetype shown = 0;
    for (; shown < changes.size() && lines.size() < 3; ++shown) {
        lines.append(changeLine(*changes[shown].watched));
    }
    if (shown < changes.size())
        lines.append(Text::tr("and %n more", nullptr, int(changes.size() - shown)));
    for (const OpenIncident *incident : opened.mid(0, 2))
        lines.append(openedLine(*incident));
    notice.body = lines.join(u'\n');
    return notice;
}

} // namespace

std::optional<Notice> between(const Snapshot &before, const Snapshot &after)
{
    const std::optional<News> news = ChangeNews::between(before, after);
    if (!news)
        return std::nullopt;
    return news->changes.isEmpty() ? incidentNotice(news->opened)
                                   : changeNotice(news->changes, news->opened);
}

QString quietText(const QuietChange &change)
{
    if (severity(change.peak) > severity(change.from) &&
        severity(change.peak) > severity(change.to))
        return change.to == Health::operational
                   ? Text::tr("%1 went %2 and recovered").arg(change.name, stateWord(change.peak))
                   : Text::tr("%1 went %2 and is %3 now")
                         .arg(change.name, stateWord(change.peak), stateWord(change.to));
    return change.to == Health::operational
               ? Text::tr("%1 recovered").arg(change.name)
               : Text::tr("%1 is %2").arg(change.name, stateWord(change.to));
}

std::optional<Notice> afterQuiet(const QuietLog &log, const Snapshot &now)
{
    const QList<QuietChange> changes = ChangeNews::afterQuiet(log, now);
    if (changes.isEmpty())
        return std::nullopt;
    QStringList texts;
    for (const QuietChange &change : changes.mid(0, 4))
        texts.append(quietText(change));
    if (changes.size() > 4)
        texts.append(Text::tr("and %n more", nullptr, int(changes.size() - 4)));
    Notice notice;
    notice.title = Text::tr("While quiet");
    notice.body = texts.join(Text::tr("; "));
    notice.worst = Health::operational;
    for (const QuietChange &change : changes)
        notice.worst = severity(change.to) > severity(notice.worst) ? change.to : notice.worst;
    notice.sourceId = changes.first().sourceId;
    const auto item = std::find_if(now.items.cbegin(), now.items.cend(),
                                   [&](const Watched &w) { return w.sourceId == notice.sourceId; });
    if (item != now.items.cend())
        notice.page = urlOf(item->page);
    return notice;
}

} // namespace lanternic::ChangeNotice
